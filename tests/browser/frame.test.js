// SPDX-License-Identifier: MIT
// What holds for every view of the page.

import assert from 'node:assert/strict';
import test from 'node:test';
import {
    assertSilent, go, modelOf, open, reportOf, rootOf, sample, textOf, usesBrowser, viewsOf,
} from './support.js';

usesBrowser();

/** The sample's page. */
async function samplePage(t, options) {
    return open(t, await reportOf(t, sample), options);
}

test('every view says nothing in the console and asks for nothing', async (t) => {
    const page = await samplePage(t);
    const views = await viewsOf(page);
    assert.ok(views.includes('#findings'));
    for (const view of [...views, '#source/config%2Fevents.xml%3A1']) {
        await go(page, view);
        assert.equal(await page.$$eval('main section:not([hidden])', (shown) => shown.length), 1,
            `one view is seen at ${view}`);
        assert.notEqual((await textOf(page)).trim(), '', `something is seen at ${view}`);
    }
    assertSilent(page);
});

test('a hash that names nothing shows a view all the same', async (t) => {
    for (const hash of ['#', '#no-view', '#source', '#source/no-file%3A3', '#findings/999999',
        '#findings/x', '#%', '#pages/%zz', '#pages/no-page', '#templates/none', '#events/x/y',
        '#events/group/none', '#__proto__', '#constructor/name']) {
        const page = await samplePage(t, {hash});
        assert.equal(await page.$$eval('main section:not([hidden])', (shown) => shown.length), 1,
            `one view is seen at ${hash}`);
        assertSilent(page);
    }
});

test('no view scrolls sideways, however narrow the window and whatever the setting', async (t) => {
    for (const dark of [false, true]) {
        const page = await samplePage(t, {dark});
        for (const width of [360, 760, 761, 1280]) {
            await page.setViewport({width, height: 800});
            for (const view of [...await viewsOf(page), '#source/config%2Fevents.xml%3A90']) {
                await go(page, view);
                const [content, window] = await page.evaluate(() =>
                    [document.scrollingElement.scrollWidth, innerWidth]);
                assert.ok(content <= window, `${view} is ${content} wide in ${window}`);
            }
        }
    }
});

test('the page follows the setting of the system', async (t) => {
    const seen = [];
    for (const dark of [false, true]) {
        const page = await samplePage(t, {dark});
        seen.push(await page.evaluate(() => {
            const {backgroundColor, color} = getComputedStyle(document.body);
            return [backgroundColor, color, document.documentElement.dataset.theme,
                document.querySelector('.switch input:checked').value];
        }));
    }
    const [light, dark] = seen;
    assert.notEqual(light[0], dark[0]);
    assert.notEqual(light[1], dark[1]);
    assert.deepEqual(light.slice(2), ['0', '0']);
    assert.deepEqual(dark.slice(2), ['1', '1']);
});

test('every place leads to its line', async (t) => {
    const page = await samplePage(t);
    const links = new Map();
    for (const view of await viewsOf(page)) {
        await go(page, view);
        // Of a view with very many places some, from all of it.
        const all = await page.$$eval('main section:not([hidden]) a.place', (places) =>
            places.map((each) => [each.hash, each.textContent]));
        const step = Math.ceil(all.length / 40);
        for (let at = 0; at < all.length; at += step)
            links.set(...all[at]);
    }
    assert.ok(links.size > 10, `${links.size} places`);
    for (const [hash, text] of links) {
        await go(page, hash);
        const [, file, line] = /^#source\/(.*):(\d+)$/.exec(decodeURIComponent(hash));
        assert.match(text, new RegExp(`\\b${line}(:\\d+)?$`), 'the link says which line');
        assert.deepEqual(await page.$eval('section[data-view="source"]', (section) => ({
            isShown: !section.hidden, file: section.querySelector('h2').textContent,
            lines: [...section.querySelectorAll('li[aria-current]')].map((each) => each.value),
            isFocused: document.activeElement?.matches('li[aria-current]'),
        })), {isShown: true, file, lines: [Number(line)], isFocused: true});
    }
    assertSilent(page);
});

test('a place shows the line of the file itself', async (t) => {
    const page = await open(t, await reportOf(t, await rootOf(t, {
        'config/events.xml': '<event_list>\n <command_event>\n  <command nam="订单 &lt;b>"/>\n' +
            ' </command_event>\n</event_list>\n'})));
    await go(page, '#findings');
    const hash = await page.$$eval('main a.place', (all) =>
        all.map((each) => each.hash).find((each) => each.includes('events.xml%3A3')));
    await go(page, hash);
    assert.equal(await page.$eval('li[aria-current] code', (code) => code.textContent),
        '  <command nam="订单 &lt;b>"/>');
    assert.ok(await page.$('li[aria-current] a.mark'), 'the finding stands at the line');
});

test('every finding of lint is listed', async (t) => {
    const root = await rootOf(t, {
        'config/events.xml': '<event_list><command_event><command/></command_event><x/></event_list>',
        'host.json': '{"rightLevel": 3}',
    });
    const report = await reportOf(t, root);
    const model = await modelOf(report);
    assert.ok(model.findings.length >= 3);
    const page = await open(t, report, {hash: '#findings'});
    const listed = await page.$$eval('.findings > li', (items) =>
        items.map((item) => item.textContent));
    assert.equal(listed.length, model.findings.length);
    model.findings.forEach((finding, index) => {
        assert.ok(listed[index].includes(finding.message), finding.message);
        assert.ok(listed[index].includes(finding.rule), finding.rule);
    });
    await go(page, '#findings/2');
    assert.equal(await page.evaluate(() => document.activeElement.id), 'finding-2');
    assertSilent(page);
});

test('on paper all views stand one behind the other', async (t) => {
    const page = await samplePage(t, {hash: '#events'});
    await page.evaluate(() => addEventListener('beforeprint', () => {
        globalThis.onPaper = [...document.querySelectorAll('main section')]
            .filter((section) => !section.hidden)
            .map((section) => [section.dataset.view, section.innerText.trim().length]);
    }));
    const titles = (await viewsOf(page)).map((hash) => hash.slice(1));
    const paper = Buffer.from(await page.pdf({format: 'A4'})).toString('latin1');
    const shown = await page.evaluate(() => globalThis.onPaper);
    assert.deepEqual(shown.map(([view]) => view), titles);
    for (const [view, length] of shown)
        assert.ok(length > 0, `${view} has something on paper`);
    assert.ok(paper.match(/\/Type\s*\/Page\b/g).length >= titles.length, 'each view begins a sheet');
    assert.deepEqual(await page.$$eval('main section:not([hidden])', (sections) =>
        sections.map((section) => section.dataset.view)), ['events'],
    'the reader is back at their view');
    assertSilent(page);
});

test('on paper nothing is wider than the sheet', async (t) => {
    const page = await samplePage(t, {width: 720});
    await page.emulateMediaType('print');
    await page.waitForFunction(() =>
        document.querySelectorAll('main section:not([hidden])').length > 1);
    const [content, window] = await page.evaluate(() =>
        [document.scrollingElement.scrollWidth, innerWidth]);
    assert.ok(content <= window, `${content} in ${window}`);
});

test('a finding stands beside what it is about', async (t) => {
    const root = await rootOf(t, {
        'config/events.xml': '<event_list><command_event><command name="one" wrong="1"/>' +
            '</command_event></event_list>',
        'config/custompage_template.xml': '<styles><style name="page"><panel name="p" wrong="1">' +
            '<element name="e" wrong="1"/></panel></style></styles>',
        'storage/palette_white.xml': '<ROOT><SWPALETTE><COLORES><COLOR NAME="ink" R="1" wrong="1"/>' +
            '</COLORES></SWPALETTE></ROOT>',
        'storage/skeleton_v1.xml': '<application><server type="1" name="s"><addr key="1" name="n" ' +
            'addrs="h:1" wrong="1"/></server></application>',
    });
    const report = await reportOf(t, root);
    const {findings, sources} = await modelOf(report);
    const page = await open(t, report);
    const views = await viewsOf(page);
    for (const [file, view] of [['config/events.xml', '#events/command/one'],
        ['config/custompage_template.xml', '#pages/page'],
        ['storage/palette_white.xml', '#palette'], ['storage/skeleton_v1.xml', '#servers']]) {
        if (!views.includes(view.split('/')[0]))
            continue;
        const numbers = findings.flatMap(({at, rule}, index) =>
            sources[at[0]].name === file && rule === 'unknown-attribute' ? [index + 1] : []);
        assert.ok(numbers.length > 0, file);
        await go(page, view);
        for (const number of numbers) {
            assert.ok(await page.$(`main section:not([hidden]) a[href="#findings/${number}"]`),
                `finding ${number} in ${file} stands in ${view}`);
        }
    }
    assertSilent(page);
});
