// SPDX-License-Identifier: MIT
// The rules of WCAG 2.1, levels A and AA, as far as a program can check them.

import assert from 'node:assert/strict';
import {readFile} from 'node:fs/promises';
import {createRequire} from 'node:module';
import test from 'node:test';
import {go, open, reportOf, rootOf, sample, usesBrowser, viewsOf} from './support.js';

usesBrowser();

const axe = await readFile(createRequire(import.meta.url).resolve('axe-core/axe.min.js'), 'utf8');

/** What breaks a rule in the page as it is seen, one line each. */
async function violations(page) {
    const found = await page.evaluate(async () => (await globalThis.axe.run(document, {
        runOnly: ['wcag2a', 'wcag2aa', 'wcag21a', 'wcag21aa'], resultTypes: ['violations'],
    })).violations.flatMap((violation) => violation.nodes.map((node) =>
        `${violation.id}: ${node.target.join(' ')} ${node.html.slice(0, 120)} ` +
            `${(node.any[0] ?? node.all[0] ?? node.none[0])?.message ?? ''}`)));
    return found;
}

async function assertAccessible(page) {
    await page.evaluate(axe);
    for (const view of [...await viewsOf(page), '#source/config%2Fevents.xml%3A9']) {
        await go(page, view);
        assert.deepEqual(await violations(page), [], view);
    }
}

for (const [dark, width] of [[false, 1280], [true, 1280], [false, 360], [true, 360]]) {
    const setting = `${dark ? 'dark' : 'light'} and ${width} wide`;

    test(`the sample's views break no rule, ${setting}`, async (t) => {
        const page = await open(t, await reportOf(t, sample), {dark, width});
        await assertAccessible(page);
    });

    test(`views of a root that cannot be read break no rule, ${setting}`, async (t) => {
        const root = await rootOf(t, {'config/events.xml': '<event_list>\n<a b="c"/>\n'});
        await assertAccessible(await open(t, await reportOf(t, root), {dark, width}));
    });
}

test('what search found breaks no rule', async (t) => {
    const page = await open(t, await reportOf(t, sample));
    await page.evaluate(axe);
    await page.focus('#query');
    await page.keyboard.type('show');
    assert.deepEqual(await violations(page), []);
});
