// SPDX-License-Identifier: MIT
// The drawn pages: which are there, where their rectangles are, and what the reader can choose.

import assert from 'node:assert/strict';
import {execFile} from 'node:child_process';
import test from 'node:test';
import {promisify} from 'node:util';
import {
    assertSilent, go, modelOf, open, reportOf, rootOf, sample, tool, usesBrowser,
} from './support.js';
import {generatedRoot, numbersOf} from './roots.js';

usesBrowser();

/**
 * What is wrong with the rectangles of the drawing that is looked at: each must be whole points,
 * drawn where its numbers say, and be filled by those in it without a gap and without overlap.
 */
function faultsOfRectangles(page) {
    return page.evaluate(() => {
        const faults = [];
        const drawing = document.querySelector('main section:not([hidden]) svg.page-drawing');
        if (!drawing)
            return ['nothing is drawn'];
        const boxOf = (group) => {
            const {kind, path, x, y, width, height, contentWidth, contentHeight} = group.dataset;
            return {name: `${kind} ${path}`, x: Number(x), y: Number(y), width: Number(width),
                height: Number(height), innerWidth: Number(contentWidth ?? width),
                innerHeight: Number(contentHeight ?? height)};
        };
        const overlaps = (one, other) => one.x < other.x + other.width &&
            other.x < one.x + one.width && one.y < other.y + other.height &&
            other.y < one.y + one.height && one.width * one.height > 0 &&
            other.width * other.height > 0;
        for (const group of drawing.querySelectorAll('g[data-kind]')) {
            const box = boxOf(group);
            const numbers = [box.x, box.y, box.width, box.height, box.innerWidth, box.innerHeight];
            if (!numbers.every((number) => Number.isInteger(number) && number >= 0))
                faults.push(`${box.name} has ${numbers}`);
            const drawn = group.querySelector(':scope > rect');
            const [x, y, width, height] = ['x', 'y', 'width', 'height'].map((name) =>
                Number(drawn.getAttribute(name)));
            const middle = (at, length) => at + length / 2;
            if (Math.abs(middle(x, width) - middle(box.x, box.width)) > 1e-6 ||
                Math.abs(middle(y, height) - middle(box.y, box.height)) > 1e-6 ||
                width > box.width || height > box.height || width < 0 || height < 0)
                faults.push(`${box.name} is drawn elsewhere`);
            const children = [...group.querySelectorAll('g[data-kind]')].filter((child) =>
                child.parentElement.closest('g[data-kind]') === group).map(boxOf);
            if (children.length === 0)
                continue;
            let area = 0;
            children.forEach((child, index) => {
                area += child.width * child.height;
                if (child.x < box.x || child.y < box.y ||
                    child.x + child.width > box.x + box.innerWidth ||
                    child.y + child.height > box.y + box.innerHeight)
                    faults.push(`${child.name} leaves ${box.name}`);
                for (const other of children.slice(index + 1)) {
                    if (overlaps(child, other))
                        faults.push(`${child.name} overlaps ${other.name}`);
                }
            });
            if (area !== box.innerWidth * box.innerHeight)
                faults.push(`${box.name} is not filled`);
        }
        return faults;
    });
}

/** The hashes of everything that the list of pages has. */
function listed(page) {
    return page.$$eval('#page-links a', (links) => links.map((link) => link.getAttribute('href')));
}

/** Draws for another window. */
async function resize(page, width, height) {
    await page.evaluate((sizes) => {
        document.querySelectorAll('main section:not([hidden]) .own-size input')
            .forEach((input, at) => {
                input.value = sizes[at];
            });
        document.querySelector('main section:not([hidden]) .own-size input')
            .dispatchEvent(new Event('change', {bubbles: true}));
    }, [width, height]);
}

/** "KIND NAME: X,Y WIDTHxHEIGHT" for each panel and element that is drawn. */
async function rectangles(t, xml) {
    const root = await rootOf(t, {'config/custompage_template.xml':
        `<styles><style name="page">${xml}</style></styles>`});
    const report = await reportOf(t, root);
    const {layout} = await modelOf(report);
    const page = await open(t, report, {hash: '#pages/page'});
    assert.deepEqual(await faultsOfRectangles(page), []);
    const groups = await page.$$eval('main section:not([hidden]) g[data-kind]', (all) =>
        all.map((group) => ({...group.dataset})));
    const said = await page.$eval('main section:not([hidden]) .problems', (box) => box.innerText);
    assertSilent(page);
    return {said, boxes: groups.filter(({kind}) => kind !== 'window').map((box) => {
        const name = box.panel !== undefined ? layout.panels[box.panel].panelName
            : box.element !== undefined ? layout.elements[box.element].elementName : box.kind;
        return `${name}: ${box.x},${box.y} ${box.width}x${box.height}`;
    })};
}

test('every page of the sample is drawn', async (t) => {
    const report = await reportOf(t, sample);
    const {layout} = await modelOf(report);
    const page = await open(t, report, {hash: '#pages'});
    const hashes = await listed(page);
    assert.equal(hashes.length, layout.pages.length + layout.reuse.length +
        layout.groups.reduce((sum, group) => sum + group.members.length, 0));
    assert.ok(layout.pages.length > 20);
    for (const hash of hashes) {
        await go(page, hash);
        assert.deepEqual(await faultsOfRectangles(page), [], hash);
        assert.ok(await page.$$eval('main section:not([hidden]) g[data-kind="element"]',
            (elements) => elements.length) > 0, `${hash} has elements`);
        // Panels that pages share are made for a part of the window.
        if (hash.split('/').length === 2) {
            assert.equal(await page.$$eval('main section:not([hidden]) [data-tight]',
                (boxes) => boxes.length), 0, `the sizes of ${hash} hold`);
        }
    }
    assertSilent(page);
});

test('every template of the sample is drawn', async (t) => {
    const page = await open(t, await reportOf(t, sample), {hash: '#templates'});
    const hashes = await page.$$eval('#template-list a', (links) =>
        links.map((link) => link.getAttribute('href')));
    assert.ok(hashes.length > 3);
    for (const hash of hashes) {
        await go(page, hash);
        assert.deepEqual(await faultsOfRectangles(page), [], hash);
    }
    assertSilent(page);
});

for (let first = 0; first < 100; first += 25) {
    test(`rectangles fill their parents, roots ${first} to ${first + 24}`, async (t) => {
        for (let seed = first; seed < first + 25; ++seed) {
            const page = await open(t, await reportOf(t, await rootOf(t, generatedRoot(seed))),
                {hash: '#pages'});
            const number = numbersOf(seed);
            for (const hash of (await listed(page)).slice(0, 3)) {
                await go(page, hash);
                assert.deepEqual(await faultsOfRectangles(page), [], `root ${seed}, ${hash}`);
                const width = 100 + Math.floor(number() * 2000);
                const height = 100 + Math.floor(number() * 1200);
                await resize(page, width, height);
                assert.deepEqual(await faultsOfRectangles(page), [],
                    `root ${seed}, ${hash}, ${width} x ${height}`);
            }
            assertSilent(page);
            await page.close();
        }
    });
}

test('shares divide what fixed sizes leave', async (t) => {
    const {boxes} = await rectangles(t, '<panel name="all"><panel name="a" fix_size="280"/>' +
        '<panel name="b" split_scale="0.25"/><panel name="c" split_scale="0.75"/></panel>');
    assert.deepEqual(boxes, ['all: 0,0 1280x800', 'a: 0,0 280x800', 'b: 280,0 250x800',
        'c: 530,0 750x800']);
});

test('the smallest and the largest size bound a share', async (t) => {
    const {boxes} = await rectangles(t, '<panel name="all" vertical="true">' +
        '<panel name="a" min_size="500"/><panel name="b"/><panel name="c" max_size="50"/></panel>');
    assert.deepEqual(boxes, ['all: 0,0 1280x800', 'a: 0,0 1280x500', 'b: 0,500 1280x250',
        'c: 0,750 1280x50']);
});

test('what a fixed size leaves is said to be empty', async (t) => {
    const {boxes} = await rectangles(t, '<panel name="all"><panel name="a" fix_size="300"/></panel>');
    assert.deepEqual(boxes, ['all: 0,0 1280x800', 'a: 0,0 300x800', 'rest: 300,0 980x800']);
});

test('sizes that cannot hold are drawn smaller, and it is said', async (t) => {
    const {boxes, said} = await rectangles(t, '<panel name="all"><panel name="a" fix_size="1920"/>' +
        '<panel name="b" min_size="640"/></panel>');
    assert.deepEqual(boxes, ['all: 0,0 1280x800', 'a: 0,0 960x800', 'b: 960,0 320x800']);
    assert.match(said, /2560/);
});

test('a size that is none is said', async (t) => {
    for (const attribute of ['split_scale="-1"', 'min_size="9" max_size="5"',
        'min_size="-3"', 'fix_size="1e39"']) {
        const {said} = await rectangles(t, `<panel name="p"><panel name="odd" ${attribute}/></panel>`);
        assert.match(said, /"odd"/, attribute);
    }
});

test('a theme changes the colours of the drawing and nothing else', async (t) => {
    const page = await open(t, await reportOf(t, sample), {hash: '#pages'});
    const look = () => page.evaluate(() => {
        const rects = [...document.querySelectorAll('main section:not([hidden]) .page-drawing rect')];
        return {places: rects.map((rect) => ['x', 'y', 'width', 'height'].map((name) =>
            rect.getAttribute(name)).join()), fills: rects.map((rect) => rect.getAttribute('fill'))};
    });
    const light = await look();
    await page.click('.switch input[value="1"]');
    const dark = await look();
    assert.deepEqual(dark.places, light.places);
    assert.notDeepEqual(dark.fills, light.fills);
    // Those of the palettes' window.
    assert.ok(light.fills.some((fill) => /^#f5f7fa/i.test(fill)));
    assert.ok(dark.fills.some((fill) => /^#14181d/i.test(fill)));
    await page.click('.switch input[value="0"]');
    assert.deepEqual(await look(), light);
});

test('a slot shows the member that is chosen', async (t) => {
    const report = await reportOf(t, sample);
    const {layout} = await modelOf(report);
    const page = await open(t, report, {hash: '#pages'});
    let slots = 0;
    for (const hash of (await listed(page)).slice(0, layout.pages.length)) {
        await go(page, hash);
        const select = await page.$('#page-content select[id^="pages-slot-"]');
        if (!select)
            continue;
        slots += 1;
        const {id, values, label} = await select.evaluate((list) => ({id: list.id,
            values: [...list.options].map((option) => option.value), label: list.labels[0].innerText}));
        const path = id.replace('pages-slot-', '');
        const group = layout.groups.find(({name}) => label.includes(name));
        for (const value of values.filter((each) => each.startsWith('='))) {
            await page.select(`select[id="${id}"]`, value);
            const member = group.members.find(({name}) => name === value.slice(1));
            assert.equal(await page.$eval(`#page-content g[data-path="${path}"]`, (box) =>
                Number(box.dataset.panel)), member.panel, `${hash} ${value}`);
            assert.deepEqual(await faultsOfRectangles(page), [], `${hash} ${value}`);
            assert.equal(await page.evaluate(() => document.activeElement.id), id,
                'the focus stays at the choice');
        }
    }
    assert.ok(slots > 0, 'the sample has slots');
    assertSilent(page);
});

/** The elements of a page as the tool dumps it, sorted. */
async function dumpedElements(name) {
    const {stdout} = await promisify(execFile)(tool,
        ['dump', 'style', '--root', sample, '--', name], {maxBuffer: 1 << 28});
    const found = [];
    const walk = (panel) => {
        for (const element of panel.paneElements ?? [])
            found.push(`${element.elementName} ${element.elementParam} ${element.elementUuid}`);
        (panel.panePanes ?? []).forEach(walk);
    };
    JSON.parse(stdout).stylePanes.forEach(walk);
    return found.sort();
}

test('a custom page is drawn as the library builds it', async (t) => {
    const report = await reportOf(t, sample);
    const {layout} = await modelOf(report);
    const page = await open(t, report, {hash: '#templates'});
    const names = new Set();
    for (const template of layout.templates) {
        await go(page, `#templates/${encodeURIComponent(template.name)}`);
        for (const id of await page.$$eval('#template-content select[id^="templates-slot-"]',
            (lists) => lists.map((list) => list.id))) {
            const values = await page.$$eval(`#${id} option`, (options) =>
                options.map((option) => option.value));
            for (const value of [...values.slice(0, 4), values.at(-1)]) {
                await page.select(`#${id}`, value);
                const name = await page.$eval('#custom-name', (text) => text.textContent);
                const isNew = !names.has(name);
                names.add(name);
                const elements = await page.$$eval('#template-content g[data-element]', (all) =>
                    all.map((element) => Number(element.dataset.element)));
                if (!isNew || !await page.$('#template-content .page-drawing'))
                    continue;
                assert.deepEqual(elements.map((number) => {
                    const {elementName, elementParam = null, elementUuid = null} =
                        layout.elements[number];
                    return `${elementName} ${elementParam} ${elementUuid}`;
                }).sort(), await dumpedElements(name), name);
            }
        }
    }
    assert.ok(names.size > 10, `${names.size} pages`);
    assertSilent(page);
});

test('the window has the size that is chosen, within limits', async (t) => {
    const page = await open(t, await reportOf(t, sample), {hash: '#pages'});
    const size = () => page.$eval('main section:not([hidden]) g[data-kind="window"]', (window) =>
        `${window.dataset.width}x${window.dataset.height}`);
    assert.equal(await size(), '1280x800');
    await page.select('#pages-size', '1920x1080');
    assert.equal(await size(), '1920x1080');
    for (const [given, drawn] of [[['333', '777'], '333x777'], [['0', '-5'], '100x100'],
        [['1e9', '99999'], '10000x10000'], [['', ''], '100x100'], [['640.4', '480'], '640x480']]) {
        await resize(page, ...given);
        assert.equal(await size(), drawn, `${given}`);
        assert.deepEqual(await faultsOfRectangles(page), [], `${given}`);
    }
    assertSilent(page);
});

test('what is chosen in the drawing is described, by mouse and by keyboard', async (t) => {
    const page = await open(t, await reportOf(t, sample), {hash: '#pages'});
    await page.$eval('main section:not([hidden]) g[data-element] > rect', (rect) =>
        rect.dispatchEvent(new MouseEvent('click', {bubbles: true})));
    const byMouse = await page.$eval('.box-details', (box) => box.innerText);
    assert.notEqual(byMouse.trim(), '');
    await page.focus('.tree button, .tree a');
    await page.keyboard.press('Enter');
    const byKeys = await page.$eval('.box-details', (box) => box.innerText);
    assert.notEqual(byKeys.trim(), '');
    assert.notEqual(byKeys, byMouse);
    assertSilent(page);
});
