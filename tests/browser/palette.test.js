// SPDX-License-Identifier: MIT
// The palette as it is seen, and the tables of servers, settings and addresses.

import assert from 'node:assert/strict';
import test from 'node:test';
import {assertSilent, go, open, reportOf, rootOf, sample, textOf, usesBrowser} from './support.js';

usesBrowser();

function palette(...parts) {
    const [colors = '', keys = '', fonts = '', images = ''] = parts;
    return `<ROOT><SWPALETTE><COLORES>${colors}</COLORES><FONTS>${fonts}</FONTS>
        <BITMAPS>${images}</BITMAPS><APP_MAP><COLORES>${keys}</COLORES></APP_MAP>
        </SWPALETTE></ROOT>`;
}

/** The row of a table whose head is this text, as texts of its cells. */
function row(page, head) {
    return page.$$eval('main section:not([hidden]) tr', (rows, name) => rows
        .filter((each) => each.querySelector('th[scope=row]')?.innerText.trim() === name)
        .map((each) => [...each.cells].map((cell) => cell.innerText.trim())), head);
}

test('a colour stands in both themes with its colour as a swatch', async (t) => {
    const files = {
        'storage/palette_white.xml': palette('<COLOR NAME="ink" R="1" G="2" B="3"/>',
            '<ITEM KEY="View.text" VALUE="ink"/>'),
        'storage/palette_black.xml': palette('<COLOR NAME="ink" R="250" G="240" B="230" A="0.5"/>',
            '<ITEM KEY="View.text" VALUE="ink"/>'),
    };
    const page = await open(t, await reportOf(t, await rootOf(t, files)), {hash: '#palette'});
    const seen = await page.$$eval('main tr', (rows) => rows
        .filter((each) => each.querySelector('th[scope=row]')?.innerText.trim() === 'View.text')
        .map((each) => [...each.querySelectorAll('.swatch > span')].map((swatch) =>
            getComputedStyle(swatch).backgroundColor)));
    assert.equal(seen.length, 1);
    assert.equal(seen[0][0], 'rgb(1, 2, 3)');
    assert.match(seen[0][1], /^rgba\(250, 240, 230, 0\.5/);
    assertSilent(page);
});

test('a key that one theme lacks is said to be missing there', async (t) => {
    const files = {
        'storage/palette_white.xml': palette('<COLOR NAME="ink" R="1" G="2" B="3"/>',
            '<ITEM KEY="View.text" VALUE="ink"/>'),
        'storage/palette_black.xml': palette('<COLOR NAME="ink" R="1" G="2" B="3"/>'),
    };
    const page = await open(t, await reportOf(t, await rootOf(t, files)), {hash: '#palette'});
    const [cells] = await row(page, 'View.text');
    assert.match(cells[2], /no such key/);
});

test('contrasts of declared pairs stand with their figure', async (t) => {
    const text = palette('<COLOR NAME="ink" R="0" G="0" B="0"/><COLOR NAME="snow" R="255" G="255" ' +
        'B="255"/>', '<ITEM KEY="View.text" VALUE="ink"/><ITEM KEY="View.ground" VALUE="snow"/>');
    const files = {
        'storage/palette_white.xml': text,
        'storage/palette_black.xml': text,
        'contrast.json': '{"pairs": [' +
            '{"text": "View.text", "ground": "View.ground", "minimum": 4.5}, ' +
            '{"text": "View.text", "ground": "View.text", "minimum": 4.5}]}',
    };
    const page = await open(t, await reportOf(t, await rootOf(t, files)), {hash: '#palette'});
    const rows = await page.$$eval('main tbody tr', (all) => all.map((each) => each.innerText));
    const [good, bad] = ['View.ground', 'View.text'].map((ground) =>
        rows.find((each) => each.startsWith(`View.text on ${ground}`)));
    assert.match(good, /21.*passes/s);
    assert.match(bad, /1.*too low/s);
});

test('images of the sample are seen, and each sight redraws the palette', async (t) => {
    const page = await open(t, await reportOf(t, sample), {hash: '#palette'});
    const broken = await page.$$eval('main img', async (images) => {
        for (const image of images)
            image.loading = 'eager';
        await Promise.all(images.map((image) => image.decode().catch(() => {})));
        return images.filter((image) => image.naturalWidth === 0).length;
    });
    assert.equal(broken, 0, 'every image is drawn');
    assert.ok(await page.$$eval('main img', (images) => images.length) > 10);
    for (const sight of ['protanopia', 'deuteranopia', 'tritanopia', '']) {
        await page.select('main section:not([hidden]) .controls select', sight);
        const filter = await page.$eval('main .seen', (node) => getComputedStyle(node).filter);
        assert.ok(sight === '' ? filter === 'none' : filter.includes(sight), `${sight}: ${filter}`);
    }
    assertSilent(page);
});

test('servers, settings, web pages and request URLs are tables', async (t) => {
    const page = await open(t, await reportOf(t, sample));
    const has = async (hash, ...texts) => {
        await go(page, hash);
        const seen = await textOf(page);
        for (const text of texts)
            assert.ok(seen.includes(text), `${text} is seen at ${hash}`);
        assert.ok(await page.$('main section:not([hidden]) table'), `${hash} has a table`);
    };
    await has('#servers', '上海行情', '192.0.2.11:9211');
    await has('#settings', 'appearance', 'zh-Hans');
    await has('#web-pages', 'help_center', 'https://help.terminal.example.com/');
    await has('#request-urls', 'quote_snapshot');
    assertSilent(page);
});

test('the user\'s own values are marked', async (t) => {
    const settings = (value) => `<config><window><width>${value}</width></window></config>`;
    const page = await open(t, await reportOf(t, await rootOf(t, {
        'storage/app_config.xml': settings('800'), 'user/app_config.xml': settings('1024')})),
    {hash: '#settings'});
    const text = await textOf(page);
    assert.match(text, /1024/);
    assert.match(text, /user/i);
});
