// SPDX-License-Identifier: MIT
// Follows the server that the page came from: shows each new model, and says when the server has
// gone. A page that nobody sees does not wait for changes, because browsers keep few connections
// for all pages of an address; it looks for them when it is seen again.

let changes = null;
let goneTimer = null;

/** The model that is shown, as the server writes it; null until the first one was fetched. */
let shownText = null;
let isFetching = false;
let isStale = false;

function sayGone() {
    document.getElementById('broken').prepend(h('p', {id: 'gone'},
        'The preview has ended. The page follows the files again once it is back.'));
}

function setGone(isGone) {
    if (isGone) {
        goneTimer ??= setTimeout(sayGone, 1500);
        return;
    }
    clearTimeout(goneTimer);
    goneTimer = null;
    document.getElementById('gone')?.remove();
}

function show(text) {
    const isFirst = shownText === null;
    if (text === shownText)
        return;
    const other = JSON.parse(text);
    shownText = text;
    if (!isFirst || JSON.stringify(other) !== JSON.stringify(model))
        replaceModel(other);
}

/** One request at a time; what changes meanwhile is asked for after it. */
async function update() {
    isStale = true;
    if (isFetching)
        return;
    isFetching = true;
    try {
        while (isStale) {
            isStale = false;
            const answer = await fetch('/model');
            if (!answer.ok)
                throw new Error(answer.statusText);
            show(await answer.text());
        }
    } catch {
        // Without the server its next event asks again.
        if (changes?.readyState === EventSource.OPEN)
            setTimeout(update, 500);
    } finally {
        isFetching = false;
    }
}

function connect() {
    changes?.close();
    changes = new EventSource('/changes');
    changes.onopen = () => setGone(false);
    changes.onmessage = update;
    changes.onerror = () => {
        setGone(true);
        // Some errors the browser takes for final.
        if (changes?.readyState === EventSource.CLOSED)
            setTimeout(() => document.hidden || connect(), 1000);
    };
}

function connectIfSeen() {
    if (!document.hidden) {
        connect();
        return;
    }
    changes?.close();
    changes = null;
}

document.addEventListener('visibilitychange', connectIfSeen);
connectIfSeen();
