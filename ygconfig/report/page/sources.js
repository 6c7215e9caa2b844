// SPDX-License-Identifier: MIT
// The lines around a place of a file.

const linesAround = 60;

addView({
    name: 'source',
    draw: () => [h('div', {id: 'source-lines'})],
    show: (section, [place]) => {
        const [, name, line] = /^(.*?)(?::(\d+))?$/s.exec(place ?? '');
        const box = section.querySelector('#source-lines');
        box.replaceChildren(h('h2', null, name), ...sourceLines(name, Number(line ?? 1)));
        const marked = box.querySelector('[aria-current]');
        marked?.scrollIntoView({block: 'center'});
        marked?.focus({preventScroll: true});
    },
});

function sourceLines(name, line) {
    const number = model.sources.findIndex((source) => source.name === name);
    const lines = model.sources[number]?.lines;
    if (!lines)
        return [h('p', null, 'The lines of this file are not in the report.')];
    const first = Math.max(1, line - linesAround);
    const last = Math.min(lines.length, line + linesAround);
    const more = (to, text) => h('p', null,
        h('a', {href: hashOf('source', `${name}:${to}`)}, text));
    const rows = [];
    for (let at = first; at <= last; ++at) {
        const marks = linesOfFindings().get(`${number}:${at}`) ?? [];
        rows.push(h('li', {value: at, 'aria-current': at === line ? 'location' : null,
            tabindex: at === line ? -1 : null},
        h('code', null, lines[at - 1]),
        marks.map((index) => h('a', {class: `mark ${model.findings[index].severity}`,
            href: hashOf('findings', index + 1)}, model.findings[index].message))));
    }
    return [
        first > 1 && more(Math.max(1, first - linesAround), 'Lines above'),
        h('div', {class: 'lines', tabindex: 0, role: 'region', 'aria-label': name},
            h('ol', null, rows)),
        last < lines.length && more(Math.min(lines.length, last + linesAround), 'Lines below'),
    ].filter(Boolean);
}
