// SPDX-License-Identifier: MIT
// The frame: the head of the page, the list of views, and the view that is looked at.

const drawn = new Set();

function themeSwitch() {
    const names = ['Light theme', 'Dark theme'];
    return h('fieldset', {class: 'switch'},
        h('legend', null, 'Theme of the drawings'),
        names.map((name, style) => h('label', null,
            h('input', {type: 'radio', name: 'theme', value: style, checked: chosen.theme === style,
                onchange: () => chooseTheme(style)}),
            h('span', null, name))));
}

function chooseTheme(style) {
    chosen.theme = style;
    document.documentElement.dataset.theme = style;
    for (const listener of themeListeners)
        listener(style);
}

function listOfViews() {
    return h('nav', {'aria-label': 'Views'}, h('ul', null, [...views.values()].filter((view) =>
        view.title).map((view) => h('li', null, h('a', {href: hashOf(view.name),
        'data-view': view.name}, view.title, view.count && h('span', {class: 'count'},
        view.count()))))));
}

function frame() {
    return [
        h('a', {class: 'skip', href: '#content', onclick: (event) => {
            event.preventDefault();
            document.getElementById('content').focus();
        }}, 'To the content'),
        h('header', {class: 'top'},
            h('div', {class: 'title'}, h('h1', null, model.root),
                h('p', {class: 'quiet'}, `ygconfig ${model.version}`)),
            searchBox(), themeSwitch(),
            h('div', {id: 'broken', role: 'alert', tabindex: 0}, brokenContent())),
        listOfViews(),
        h('main', {id: 'content', tabindex: -1},
            [...views.values()].map((view) => h('section', {'data-view': view.name, hidden: true,
                'aria-label': view.title}))),
    ];
}

/** Why the page may show an earlier state; nothing when it shows the files as they are. */
function brokenContent() {
    if (!model.broken?.length)
        return null;
    return [h('p', null, h('strong', null, 'Some files cannot be read. '),
        'Until they can, the page shows how they were before, or lacks them.'),
    h('ul', null, model.broken.map(({message, file, line, column, text}) => h('li', null, message,
        file && [' ', h('code', null, `${file}:${line}:${column}`)],
        text && h('pre', null, text))))];
}

function sectionOf(view) {
    return document.querySelector(`section[data-view="${view.name}"]`);
}

function drawView(view) {
    if (drawn.has(view.name))
        return;
    drawn.add(view.name);
    sectionOf(view).replaceChildren(...[view.title && h('h2', null, view.title),
        ...view.draw()].flat(Infinity).filter(Boolean));
}

/** The parts of the hash, the name of the view first. */
function partsOfHash() {
    return location.hash.slice(1).split('/').map((part) => {
        try {
            return decodeURIComponent(part);
        } catch {
            return part;
        }
    });
}

function go() {
    const [name, ...parts] = partsOfHash();
    const view = views.get(name) ?? views.values().next().value;
    for (const each of views.values())
        sectionOf(each).hidden = each !== view;
    for (const link of document.querySelectorAll('nav a')) {
        if (link.dataset.view === view.name)
            link.setAttribute('aria-current', 'page');
        else
            link.removeAttribute('aria-current');
    }
    drawView(view);
    view.show?.(sectionOf(view), parts);
}

/** Shows another model, and leaves the reader where they were. */
function replaceModel(other) {
    const top = [scrollX, scrollY];
    const focused = document.activeElement?.id;
    model = other;
    derived.clear();
    drawn.clear();
    themeListeners.clear();
    const query = document.getElementById('query').value;
    start();
    document.getElementById('query').value = query;
    if (focused)
        document.getElementById(focused)?.focus({preventScroll: true});
    scrollTo(...top);
}

// On paper all views stand one behind the other.
let isOnPaper = false;

function setOnPaper(onPaper) {
    if (onPaper === isOnPaper)
        return;
    isOnPaper = onPaper;
    for (const view of views.values()) {
        if (!view.title)
            continue;
        const section = sectionOf(view);
        section.hidden = !onPaper;
        if (onPaper) {
            drawView(view);
            if (view.print)
                section.append(h('div', {class: 'paper'}, view.print()));
        } else {
            section.querySelector(':scope > .paper')?.remove();
        }
    }
    if (!onPaper)
        go();
}

// What sticks below the head of the page has to know how high that is.
const headSize = new ResizeObserver(([{target}]) => setStyle(document.documentElement,
    {'--head': `${target.offsetHeight}px`}));

function start() {
    document.body.replaceChildren(...frame());
    headSize.disconnect();
    headSize.observe(document.querySelector('.top'));
    document.title = `${visible(model.root)} \u2013 ygconfig report`;
    document.documentElement.dataset.theme = chosen.theme;
    go();
}

addEventListener('hashchange', () => {
    go();
    // A new page begins at its top, as links elsewhere do.
    if (!views.get(partsOfHash()[0])?.show)
        scrollTo(0, 0);
});
addEventListener('beforeprint', () => setOnPaper(true));
addEventListener('afterprint', () => setOnPaper(false));
matchMedia('print').addEventListener('change', (event) => setOnPaper(event.matches));
addEventListener('keydown', (event) => {
    if (event.key === '/' && !event.target.closest('input, select, textarea')) {
        event.preventDefault();
        document.getElementById('query').focus();
    }
});
start();
