// SPDX-License-Identifier: MIT
// The page that follows a root while its files are edited.

import assert from 'node:assert/strict';
import {spawn} from 'node:child_process';
import {once} from 'node:events';
import {
    cp, mkdir, readFile, rename, rm, symlink, unlink, writeFile,
} from 'node:fs/promises';
import {join} from 'node:path';
import test from 'node:test';
import {
    eventually, open, sample, temporaryFolder, tool, usesBrowser,
} from './support.js';

usesBrowser();

/** Serves a root until the test ends; answers the address. */
async function preview(t, root) {
    const server = spawn(tool, ['preview', '--root', root], {stdio: ['ignore', 'pipe', 'inherit']});
    const ended = once(server, 'exit');
    t.after(async () => {
        server.kill('SIGTERM');
        assert.deepEqual(await ended, [0, null]);
    });
    let printed = '';
    for await (const piece of server.stdout.setEncoding('utf8').iterator({destroyOnReturn: false})) {
        printed += piece;
        if (printed.includes('\n'))
            break;
    }
    return printed.trim();
}

/** A copy of the sample, for editing, and the text of its events with one more command. */
async function editableRoot(t) {
    const root = join(await temporaryFolder(t), 'root');
    await cp(sample, root, {recursive: true});
    const events = await readFile(join(root, 'config/events.xml'), 'utf8');
    return {root, file: join(root, 'config/events.xml'), withCommand: (name) =>
        events.replace('<command_event>', `<command_event><command name="${name}"/>`)};
}

/** Ways in which editors, tools and people save a file. */
const ways = [
    async function inPlace({file}, text) {
        await writeFile(file, text);
    },
    async function byRename({file}, text) {
        await writeFile(`${file}~`, text);
        await rename(`${file}~`, file);
    },
    async function twice({file}, text) {
        await writeFile(file, '');
        await writeFile(file, text.slice(0, text.length / 2));
        await writeFile(file, text);
    },
    async function deletedFirst({file}, text) {
        await unlink(file);
        await writeFile(file, text);
    },
    async function throughALink({root, file}, text) {
        const target = join(root, '..', 'linked.xml');
        await writeFile(target, text);
        await rm(file, {force: true});
        await symlink(target, file);
    },
    async function withItsFolder({root, file}, text) {
        const folder = join(root, 'config');
        await cp(folder, `${folder}.new`, {recursive: true});
        await rm(join(`${folder}.new`, 'events.xml'), {force: true});
        await rename(folder, `${folder}.old`);
        await rename(`${folder}.new`, folder);
        await writeFile(file, text);
        await rm(`${folder}.old`, {recursive: true});
    },
];

/** What is not asked of the page's own server, or should not come to the console. */
function foreign(page, address) {
    const {origin} = new URL(address);
    return page.faults.filter((fault) =>
        ![`request: ${origin}/model`, `request: ${origin}/changes`].includes(fault));
}

test('fifty saves of six kinds are drawn, and the reader stays where they are', async (t) => {
    const edited = await editableRoot(t);
    const address = await preview(t, edited.root);
    const page = await open(t, address, {hash: '#events/command/show_quotes', height: 500});
    await page.click('.switch label:last-child input');
    await page.focus('#query');
    await page.keyboard.type('tick');
    await page.keyboard.press('Escape');
    const position = await page.evaluate(() => {
        scrollTo(0, 120);
        return scrollY;
    });
    assert.ok(position > 0, 'the page can be scrolled');
    for (let save = 0; save < 50; ++save) {
        const way = ways[save % ways.length];
        const name = `saved_${save}_${way.name}`;
        await way(edited, edited.withCommand(name));
        await eventually(page, (text) => document.querySelector(
            'section[data-view="events"]').textContent.includes(text), name);
        const state = await page.evaluate(() => ({
            hash: location.hash, theme: document.documentElement.dataset.theme,
            chosen: document.querySelector('.switch input:checked').value,
            query: document.getElementById('query').value, focused: document.activeElement.id,
            position: scrollY, broken: document.getElementById('broken').textContent,
            title: document.querySelector('#event-subject h3').textContent,
        }));
        assert.deepEqual(state, {hash: '#events/command/show_quotes', theme: '1', chosen: '1',
            query: 'tick', focused: 'query', position, broken: '',
            title: 'Command show_quotes'}, name);
    }
    assert.deepEqual(foreign(page, address), []);
});

test('while a file is broken the last good picture stays, with the reason on top', async (t) => {
    const edited = await editableRoot(t);
    const address = await preview(t, edited.root);
    const page = await open(t, address, {hash: '#events'});
    const drawnNow = () => page.$eval('section[data-view="events"]', (view) => view.innerText);
    const before = await drawnNow();
    const shipped = await readFile(edited.file, 'utf8');
    const whole = edited.withCommand('repaired');
    for (const cut of [whole.length / 2, 40, 0]) {
        await writeFile(edited.file, whole.slice(0, cut));
        await eventually(page, () =>
            document.getElementById('broken').textContent.includes('config/events.xml'));
        assert.equal(await drawnNow(), before);
        assert.ok(await page.$eval('#broken', (box) => {
            const {top, bottom, height} = box.getBoundingClientRect();
            return height > 0 && top >= 0 && bottom <= innerHeight;
        }), 'the reason is seen');
        await writeFile(edited.file, whole);
        await eventually(page, () => document.getElementById('broken').textContent === '' &&
            document.querySelector('section[data-view="events"]').textContent.includes('repaired'));
        await writeFile(edited.file, shipped);
        await eventually(page, () => !document.querySelector(
            'section[data-view="events"]').textContent.includes('repaired'));
    }
    assert.deepEqual(foreign(page, address), []);
});

test('a folder that goes and comes back is followed', async (t) => {
    const {root, withCommand} = await editableRoot(t);
    const page = await open(t, await preview(t, root), {hash: '#events'});
    for (const name of ['first', 'second']) {
        await rm(join(root, 'config'), {recursive: true});
        await eventually(page, () => !document.querySelector(
            'section[data-view="events"]').textContent.includes('show_quotes') ||
            document.getElementById('broken').textContent !== '');
        await mkdir(join(root, 'config'));
        await writeFile(join(root, 'config/events.xml'), withCommand(name));
        await eventually(page, (text) => document.querySelector(
            'section[data-view="events"]').textContent.includes(text), name);
    }
});
