// SPDX-License-Identifier: MIT
// Texts of files stay texts, whatever they hold: nothing of them runs or becomes markup, and the
// reader sees them.

import assert from 'node:assert/strict';
import {join} from 'node:path';
import test from 'node:test';
import {
    assertSilent, go, modelOf, open, reportOf, rootOf, temporaryFolder, textOf, usesBrowser,
    viewsOf, writeFiles,
} from './support.js';
import {rootOfTexts} from './roots.js';

usesBrowser();

const attack = 'globalThis.wasRun = 1';

/** Names that would end an element, begin one, or run when they are followed or looked up. */
const markup = [
    `<script>${attack}</script>`,
    `</script><script>${attack}</script>`,
    '<!--<script>',
    `]]><img src=x onerror=${attack}>`,
    `"><svg onload='${attack}'>`,
    `' onmouseover='${attack}' x='`,
    `javascript:${attack}`,
    `</style></title></textarea><script>${attack}</script>`,
    '&lt;b&gt;&amp;#60;',
    '{{model}} ${1} \\u003cb> \\',
    '%3Cb%3E/a%zz#b?c=d&e',
];

/** Names that objects have, and that are none. */
const odd = ['__proto__', 'constructor', 'toString', 'hasOwnProperty', ' ', '0', '-1', '#', '.'];

/** Opens, presses, chooses and touches everything in the view that is looked at. */
async function useEverything(page) {
    await page.evaluate(() => {
        const section = document.querySelector('main section:not([hidden])');
        for (const details of section.querySelectorAll('details'))
            details.open = true;
        const all = (what) => [...section.querySelectorAll(what)].slice(0, 300);
        for (const button of all('button'))
            button.click();
        for (const box of all('input[type=checkbox], input[type=radio]'))
            box.click();
        for (const select of all('select')) {
            for (const {value} of [...select.options].slice(0, 20)) {
                select.value = value;
                select.dispatchEvent(new Event('input', {bubbles: true}));
                select.dispatchEvent(new Event('change', {bubbles: true}));
            }
        }
        for (const node of all('*')) {
            for (const event of ['mouseover', 'mouseenter', 'focusin', 'pointerdown'])
                node.dispatchEvent(new Event(event, {bubbles: true}));
        }
    });
}

/** What in the page could run or ask for something; nothing of a page that is in order. */
function dangers(page) {
    return page.evaluate(() => {
        const found = [];
        if ('wasRun' in globalThis)
            found.push('a text was run');
        for (const node of document.body.querySelectorAll('*')) {
            if (/^(script|iframe|object|embed|link|base|meta|form|style|audio|video|foreignobject)$/i
                .test(node.localName))
                found.push(node.outerHTML.slice(0, 200));
            for (const {name, value} of node.attributes) {
                const isAddress = /^(src|srcset|action|formaction|data|poster|background)$/.test(name);
                const isLink = /^(href|xlink:href)$/.test(name);
                if (/^on/i.test(name) || name === 'srcdoc' || name === 'style' && /url/.test(value) ||
                    isAddress && !/^data:image\/(png|jpeg|svg\+xml)[;,]/.test(value) ||
                    isLink && !/^(#|https?:\/\/|data:image\/(png|jpeg)[;,])/.test(value))
                    found.push(`${node.localName} ${name}=${value.slice(0, 200)}`);
            }
        }
        return found;
    });
}

/** Looks at everything in a report, and answers all texts that were to be seen, for each view. */
async function lookAtEverything(page) {
    const texts = new Map();
    const look = async (hash) => {
        const seen = await textOf(page);
        const [view, text] = await page.$eval('main section:not([hidden])', (section) =>
            [section.dataset.view, section.textContent]);
        texts.set(view, `${texts.get(view) ?? ''}\n${seen}\n${text}`);
        assert.deepEqual(await dangers(page), [], hash);
    };
    for (const hash of await viewsOf(page)) {
        await go(page, hash);
        await look(hash);
        const links = await page.$$eval('main section:not([hidden]) a[href^="#"]', (all) =>
            [...new Set(all.map((link) => link.getAttribute('href')))].slice(0, 60));
        await useEverything(page);
        await look(hash);
        for (const link of links) {
            await go(page, link);
            await look(link);
        }
    }
    return texts;
}

function shown(text) {
    return text.replace(/\s+/g, ' ').trim();
}

test('nothing of names that are markup runs, and all of them are to be read', async (t) => {
    const report = await reportOf(t, await rootOf(t, rootOfTexts(markup)));
    const model = await modelOf(report);
    const page = await open(t, report);
    const texts = await lookAtEverything(page);
    assertSilent(page);
    for (const view of ['events', 'pages', 'templates', 'palette', 'servers', 'settings',
        'web-pages', 'request-urls']) {
        if (!texts.has(view))
            continue;
        const seen = shown(texts.get(view));
        // A custom page's template has a name without "-".
        for (const text of markup.filter((each) => view !== 'templates' || !each.includes('-')))
            assert.ok(seen.includes(shown(text)), `${text} is to be read in ${view}`);
    }
    assert.ok(model.findings.length > 0);
});

test('names that objects have of themselves are names like others', async (t) => {
    const report = await reportOf(t, await rootOf(t, rootOfTexts(odd)));
    const page = await open(t, report);
    const texts = await lookAtEverything(page);
    for (const [view, text] of texts) {
        if (view !== 'source' && view !== 'findings')
            assert.ok(text.includes('__proto__'), view);
    }
    assertSilent(page);
});

test('search takes names that are markup', async (t) => {
    const page = await open(t, await reportOf(t, await rootOf(t, rootOfTexts([...markup, ...odd]))));
    for (const text of [...markup, ...odd]) {
        await page.$eval('#query', (query, value) => {
            query.focus();
            query.value = value;
            query.dispatchEvent(new Event('input', {bubbles: true}));
        }, text);
        assert.deepEqual(await dangers(page), []);
        const first = await page.$eval('#results', (list) => list.querySelector('a')?.hash);
        if (text.trim() === '')
            continue;
        assert.ok(first, `${text} is found`);
        await page.keyboard.press('Enter');
        assert.deepEqual(await dangers(page), []);
    }
    assertSilent(page);
});

test('characters that nobody sees are written as their numbers', async (t) => {
    const name = 'a\u202eb\u2066c\u200bd\u0085e\u2028f';
    const page = await open(t, await reportOf(t, await rootOf(t, rootOfTexts([name, 'x']))));
    const texts = await lookAtEverything(page);
    const spelt = 'a\u27e8U+202E\u27e9b\u27e8U+2066\u27e9c\u27e8U+200B\u27e9d\u27e8U+0085\u27e9e' +
        '\u27e8U+2028\u27e9f';
    for (const [view, text] of texts) {
        assert.ok(!/[\u202a-\u202e\u2066-\u2069\u200b\u0085\u2028]/.test(text), view);
        if (!['source', 'findings'].includes(view))
            assert.ok(text.includes(spelt), `the name is to be read in ${view}`);
    }
    // Attributes are read aloud and shown as well.
    assert.deepEqual(await page.$$eval('body *', (nodes) => nodes.flatMap((node) =>
        ['title', 'aria-label', 'placeholder', 'alt'].map((name) => node.getAttribute(name)))
        .filter((value) => value && /[\u202a-\u202e\u2066-\u2069\u200b\u0085\u2028]/.test(value))),
    []);
    assert.ok(!/[\u202a-\u202e\u2066-\u2069]/.test(await page.title()));
    assertSilent(page);
});

test('half characters and control characters of JSON are texts as well', async (t) => {
    const root = await rootOf(t, {
        'storage/request_urls_json.txt': '{"md5Value": "\\ud800", "urlConfigList": [' +
            '{"urlKey": "one\\u0001\\u001b[31m", "urlValue": "\\u0000<b>\\udfff"},' +
            '{"urlKey": "two\\u202e", "urlValue": "javascript:globalThis.wasRun=1"}]}',
        'host.json': '{"rightLevel": "\\ud800<script>"}',
    });
    const page = await open(t, await reportOf(t, root));
    await lookAtEverything(page);
    assertSilent(page);
});

test('file names and folders are texts too', async (t) => {
    const name = `<img src=x onerror=${attack}>\u202e"'`;
    const root = join(await temporaryFolder(t), name);
    await writeFiles(root, {
        'config/events.xml': '<event_list><x/></event_list>',
        [`storage/${name}.xml`]: '<config><a><b>1</b></a></config>',
        [`storage/urls${name}.xml`]: '<urls><url key="a">b</url><x/></urls>',
    });
    const page = await open(t, await reportOf(t, root));
    assert.ok((await page.$eval('h1', (title) => title.textContent))
        .includes('<img src=x onerror='), 'the root is called by its name');
    await lookAtEverything(page);
    assertSilent(page);
});

test('very long names leave the page as wide as it is', async (t) => {
    const names = ['x'.repeat(20000), '长'.repeat(5000), 'a b '.repeat(3000)];
    const report = await reportOf(t, await rootOf(t, rootOfTexts(names)));
    for (const width of [360, 1280]) {
        const page = await open(t, report, {width});
        for (const view of await viewsOf(page)) {
            await go(page, view);
            const [content, window] = await page.evaluate(() =>
                [document.scrollingElement.scrollWidth, innerWidth]);
            assert.ok(content <= window, `${view} is ${content} wide in ${window}`);
        }
        assertSilent(page);
    }
});
