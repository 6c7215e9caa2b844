// SPDX-License-Identifier: MIT
// A large root stays usable, because what nobody looks at is not drawn.

import assert from 'node:assert/strict';
import test from 'node:test';
import {
    assertSilent, go, open, reportOf, rootOf, usesBrowser, viewsOf,
} from './support.js';
import {largeRoot} from './roots.js';

usesBrowser();

/** How many elements the page has. */
function nodes(page) {
    return page.evaluate(() => document.querySelectorAll('*').length);
}

test('a root of a megabyte is drawn where it is looked at', async (t) => {
    const files = largeRoot();
    assert.ok(Object.values(files).join('').length > 1000000);
    const report = await reportOf(t, await rootOf(t, files));
    for (const view of await viewsOf(await open(t, report))) {
        const page = await open(t, report, {hash: view});
        assert.ok(await nodes(page) < 20000, `${view} has ${await nodes(page)} elements`);
        assert.deepEqual(await page.$$eval('main section:not([hidden])', (sections) =>
            sections.map((section) => section.dataset.view)), [view.slice(1)]);
        assert.deepEqual(await page.$$eval('main section[hidden]', (sections) =>
            sections.filter((section) => section.children.length > 0).length), 0,
        'what is not looked at is not drawn');
        assertSilent(page);
    }
});

test('a root of a megabyte can be searched, and its last page opened', async (t) => {
    const page = await open(t, await reportOf(t, await rootOf(t, largeRoot())));
    await page.focus('#query');
    await page.keyboard.type('command_599');
    await page.keyboard.press('Enter');
    assert.equal(await page.evaluate(() => location.hash), '#events/command/command_599');
    await page.focus('#query');
    await page.$eval('#query', (query) => query.select());
    await page.keyboard.type('e');
    assert.ok(await page.$$eval('#results a', (links) => links.length) <= 100,
        'of many names some are listed');
    await go(page, '#events/page/page%20199');
    assertSilent(page);
});
