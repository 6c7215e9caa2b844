// SPDX-License-Identifier: MIT
// The page without a mouse: search, and everything that the Tab key reaches.

import assert from 'node:assert/strict';
import test from 'node:test';
import {
    assertSilent, eventually, go, open, reportOf, sample, textOf, usesBrowser, viewsOf,
} from './support.js';

usesBrowser();

async function samplePage(t, options) {
    return open(t, await reportOf(t, sample), options);
}

/** The results that are listed, as texts; null while the list is closed. */
function results(page) {
    return page.$eval('#results', (list) => list.hidden ? null
        : [...list.querySelectorAll('a')].map((link) => link.innerText));
}

function focused(page) {
    return page.evaluate(() => document.activeElement.id || document.activeElement.tagName);
}

test('search finds names as they are typed, and Enter goes to the first', async (t) => {
    const page = await samplePage(t, {hash: '#findings'});
    await page.keyboard.press('/');
    assert.equal(await focused(page), 'query');
    await page.keyboard.type('show_quo');
    const found = await results(page);
    assert.ok(found.length > 0);
    for (const each of found)
        assert.match(each, /show_quo/);
    await page.keyboard.press('Enter');
    await eventually(page, () => location.hash === '#events/command/show_quotes');
    assert.equal(await results(page), null, 'the list is closed');
    assertSilent(page);
});

test('search takes upper and lower case, several words and parts of words', async (t) => {
    const page = await samplePage(t);
    await page.focus('#query');
    await page.keyboard.type('QUOTES command');
    assert.ok((await results(page)).some((each) => each.includes('show_quotes')));
});

test('search finds Chinese names', async (t) => {
    const page = await samplePage(t);
    await page.focus('#query');
    const client = await page.createCDPSession();
    await client.send('Input.insertText', {text: '自选'});
    const found = await results(page);
    assert.ok(found.length > 0, 'something is found');
    for (const each of found)
        assert.match(each, /自选/);
});

test('arrows walk through what search found, and Escape leaves it', async (t) => {
    const page = await samplePage(t);
    await page.focus('#query');
    await page.keyboard.type('show');
    const found = await results(page);
    assert.ok(found.length > 2);
    const current = () => page.evaluate(() => document.activeElement.innerText);
    await page.keyboard.press('ArrowDown');
    assert.equal(await current(), found[0]);
    await page.keyboard.press('ArrowDown');
    assert.equal(await current(), found[1]);
    await page.keyboard.press('ArrowUp');
    await page.keyboard.press('ArrowUp');
    assert.equal(await focused(page), 'query');
    await page.keyboard.press('ArrowUp');
    assert.equal(await focused(page), 'query');
    await page.keyboard.press('ArrowDown');
    await page.keyboard.press('Escape');
    assert.equal(await focused(page), 'query');
    assert.equal(await results(page), null);
    assertSilent(page);
});

test('search says when nothing has a name', async (t) => {
    const page = await samplePage(t);
    await page.focus('#query');
    await page.keyboard.type('no such name');
    assert.deepEqual(await results(page), []);
    assert.match(await page.$eval('#results', (list) => list.innerText), /Nothing/);
});

test('everything that search finds is there', async (t) => {
    const page = await samplePage(t);
    const found = await page.evaluate(() => {
        const query = document.getElementById('query');
        const hashes = new Set();
        for (const letter of 'abcdefghijklmnopqrstuvwxyz自页') {
            query.value = letter;
            query.dispatchEvent(new Event('input'));
            for (const link of document.querySelectorAll('#results a'))
                hashes.add(link.hash);
        }
        query.value = '';
        query.dispatchEvent(new Event('input'));
        return [...hashes];
    });
    assert.ok(found.length > 50, `${found.length} things`);
    for (const hash of found) {
        await go(page, hash);
        const name = decodeURIComponent(hash.split('/').at(-1))
            .replace(/^(panel|element):/, '');
        const text = await textOf(page);
        assert.equal(await page.$eval('main section:not([hidden])',
            (section) => section.dataset.view), hash.slice(1).split('/')[0]);
        assert.ok(text.includes(name), `${name} is seen at ${hash}`);
    }
    assertSilent(page);
});

test('the first key leads to the content', async (t) => {
    const page = await samplePage(t);
    await page.keyboard.press('Tab');
    assert.equal(await page.evaluate(() => document.activeElement.className), 'skip');
    await page.keyboard.press('Enter');
    assert.equal(await focused(page), 'content');
    await page.keyboard.press('Tab');
    assert.ok(await page.evaluate(() =>
        document.getElementById('content').contains(document.activeElement)));
});

test('Tab reaches every control of every view in the order of the page, and shows it', async (t) => {
    const page = await samplePage(t);
    for (const view of await viewsOf(page)) {
        await go(page, view);
        const wanted = await page.evaluate(() => {
            document.activeElement?.blur();
            getSelection().removeAllRanges();
            const seen = (node) => node.checkVisibility({visibilityProperty: true});
            const controls = [...document.querySelectorAll(
                'a[href], button, input, select, textarea, summary, [tabindex="0"]')]
                .filter((node) => seen(node) && !node.disabled && node.tabIndex >= 0)
                // Of a group of radio buttons the chosen one is reached.
                .filter((node) => node.type !== 'radio' || node.checked);
            controls.forEach((node, index) => node.setAttribute('data-stop', index));
            // Beginning at the page's own begin.
            document.body.tabIndex = -1;
            document.body.focus();
            return controls.length;
        });
        const reached = [];
        let hidden = null;
        for (;;) {
            await page.keyboard.press('Tab');
            const at = await page.evaluate(() => {
                const node = document.activeElement;
                if (!node || node === document.body)
                    return null;
                const style = getComputedStyle(node);
                const shown = node.matches(':focus-visible') && style.outlineStyle !== 'none' &&
                    parseFloat(style.outlineWidth) > 0;
                // Browsers stop by themselves at what can only be scrolled.
                const scrolls = !node.hasAttribute('data-stop') && node.tabIndex < 0 &&
                    (node.scrollWidth > node.clientWidth || node.scrollHeight > node.clientHeight);
                return {stop: node.getAttribute('data-stop'), shown, scrolls,
                    is: node.outerHTML.slice(0, 90)};
            });
            // Behind the last control comes the browser's own frame, or the first one again.
            if (!at || (at.stop === '0' && reached.length > 0) || reached.length > wanted)
                break;
            if (at.scrolls)
                continue;
            if (!at.shown)
                hidden ??= at.is;
            reached.push(at.stop === null ? at.is : Number(at.stop));
        }
        assert.deepEqual(reached, [...Array(wanted).keys()], view);
        assert.equal(hidden, null, `the focus is seen in ${view}`);
    }
    assertSilent(page);
});

test('Enter opens a view from the list of views', async (t) => {
    const page = await samplePage(t, {hash: '#events'});
    await page.focus('nav a[data-view="findings"]');
    await page.keyboard.press('Enter');
    await eventually(page, () =>
        !document.querySelector('section[data-view="findings"]').hidden);
    assert.equal(await page.$eval('nav a[aria-current]', (link) => link.dataset.view), 'findings');
});

test('arrows choose the theme', async (t) => {
    const page = await samplePage(t);
    await page.focus('.switch input:checked');
    await page.keyboard.press('ArrowRight');
    assert.equal(await page.evaluate(() => document.documentElement.dataset.theme), '1');
    await page.keyboard.press('ArrowLeft');
    assert.equal(await page.evaluate(() => document.documentElement.dataset.theme), '0');
});
