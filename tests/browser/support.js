// SPDX-License-Identifier: MIT
// What the browser tests share: roots in folders of their own, reports of them, and a browser that
// looks at these with an eye on everything that a page should not do.

import {execFile} from 'node:child_process';
import {mkdir, mkdtemp, readFile, rm, writeFile} from 'node:fs/promises';
import {tmpdir} from 'node:os';
import {delimiter, dirname, join} from 'node:path';
import {accessSync, constants} from 'node:fs';
import {fileURLToPath, pathToFileURL} from 'node:url';
import {promisify} from 'node:util';
import {after, before} from 'node:test';
import assert from 'node:assert/strict';
import puppeteer from 'puppeteer-core';

const project = join(dirname(fileURLToPath(import.meta.url)), '..', '..');

export const sample = join(project, 'examples', 'terminal');
export const tool = process.env.YG_TOOL ?? join(project, 'build/release/ygconfig/ygconfig');

/** No test waits for a time; this only ends one that would wait for ever. */
export const patience = Number(process.env.YG_PATIENCE ?? 240000);

/** A folder for one test. */
export async function temporaryFolder(t) {
    const folder = await mkdtemp(join(tmpdir(), 'yg-browser-'));
    t.after(() => rm(folder, {recursive: true, force: true, maxRetries: 9}));
    return folder;
}

export async function writeFiles(folder, files) {
    for (const [name, text] of Object.entries(files)) {
        await mkdir(dirname(join(folder, name)), {recursive: true});
        await writeFile(join(folder, name), text);
    }
}

/** A root of the files given, by name below it. */
export async function rootOf(t, files) {
    const root = join(await temporaryFolder(t), 'root');
    await mkdir(root);
    await writeFiles(root, files);
    return root;
}

/** Writes the report of a root, and answers its path. */
export async function reportOf(t, root) {
    const file = join(await temporaryFolder(t), 'report.html');
    await promisify(execFile)(tool, ['report', '--root', root, '-o', file]);
    return file;
}

/** What the page of a report is drawn from. */
export async function modelOf(report) {
    const page = await readFile(report, 'utf8');
    return JSON.parse(/<script type="application\/json" id="model">(.*?)<\/script>/s.exec(page)[1]);
}

function chromium() {
    for (const folder of process.env.PATH.split(delimiter)) {
        const path = join(folder, 'chromium');
        try {
            accessSync(path, constants.X_OK);
            return path;
        } catch {
            // It may be in the next folder.
        }
    }
    throw new Error('there is no chromium');
}

let browser = null;

/**
 * A browser for the tests of a file, with a profile of its own that goes with it. It is driven
 * through a pipe, finds no other machine, and has no sandbox, which containers do not allow.
 */
export function usesBrowser() {
    let profile;
    before(async () => {
        profile = await mkdtemp(join(tmpdir(), 'yg-browser-'));
        browser = await puppeteer.launch({
            executablePath: chromium(), userDataDir: profile, headless: true, pipe: true,
            timeout: patience, protocolTimeout: patience,
            args: ['--no-sandbox', '--disable-gpu', '--disable-dev-shm-usage',
                '--host-resolver-rules=MAP * ~NOTFOUND, EXCLUDE 127.0.0.1'],
        });
    });
    after(async () => {
        await browser.close();
        await rm(profile, {recursive: true, force: true, maxRetries: 9});
    });
}

/**
 * Opens a page in a context of its own. `faults` of what it answers has everything that came to the
 * console, each request but for the page itself, dialogs and what the page's policy refused.
 */
export async function open(t, url, options = {}) {
    const {hash = '', width = 1280, height = 900, dark = false} = options;
    const context = await browser.createBrowserContext();
    t.after(() => context.close());
    const page = await context.newPage();
    page.setDefaultTimeout(patience);
    const faults = [];
    const address = (url.startsWith('http') ? url : pathToFileURL(url).href) + hash;
    page.on('console', (message) => faults.push(`console: ${message.text()}`));
    page.on('pageerror', (error) => faults.push(`error: ${error.message}`));
    page.on('dialog', (dialog) => {
        faults.push(`dialog: ${dialog.message()}`);
        dialog.dismiss();
    });
    page.on('request', (request) => {
        const isPage = request.isNavigationRequest() && request.frame() === page.mainFrame() &&
            request.url().replace(/#.*/s, '') === address.replace(/#.*/s, '');
        if (!isPage && !request.url().startsWith('data:'))
            faults.push(`request: ${request.url()}`);
    });
    await page.exposeFunction('reportRefusal', (what) => faults.push(`refused: ${what}`));
    await page.evaluateOnNewDocument(() => addEventListener('securitypolicyviolation', (event) =>
        window.reportRefusal(`${event.violatedDirective} ${event.blockedURI} ${event.sample}`)));
    await page.setViewport({width, height});
    await page.emulateMediaFeatures([
        {name: 'prefers-color-scheme', value: dark ? 'dark' : 'light'}]);
    await page.goto(address);
    await page.waitForSelector('main section:not([hidden])');
    return Object.assign(page, {faults});
}

export function assertSilent(page) {
    assert.deepEqual(page.faults, []);
}

/** Goes to a part of the page by its hash. */
export async function go(page, hash) {
    await page.evaluate((to) => new Promise((done) => {
        if (location.hash === to)
            return done();
        addEventListener('hashchange', () => done(), {once: true});
        location.hash = to;
    }), hash);
}

/** The hashes of all views, and of the lines of a file that has findings if there is one. */
export async function viewsOf(page) {
    return page.evaluate(() => {
        const views = [...document.querySelectorAll('nav a')].map((link) => link.hash);
        return views;
    });
}

/** The text of the section that is looked at, as a reader sees it who looks at all of it. */
export function textOf(page) {
    return page.$eval('main section:not([hidden])', (section) => {
        // What is far below is drawn only when the reader comes near.
        for (const part of section.querySelectorAll('article'))
            part.style.contentVisibility = 'visible';
        return section.innerText;
    });
}

/** What of a question in the page holds, waited for. */
export async function eventually(page, question, ...parts) {
    await page.waitForFunction(question, {timeout: patience}, ...parts);
}
