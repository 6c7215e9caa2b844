// SPDX-License-Identifier: MIT
// What the page is drawn from, and where it stands in the files.

/** The model that is shown. replaceModel in main.js puts another one in its place. */
let model = JSON.parse(document.getElementById('model').textContent);

const derived = new Map();

/** What is worked out from the model when it is first asked for. */
function once(key, work) {
    if (!derived.has(key))
        derived.set(key, work());
    return derived.get(key);
}

/** The items of a list by a name, the last one of a name; made once for each key. */
function byName(key, list, nameOf) {
    return once(key, () => new Map(list().map((item) => [nameOf(item), item])));
}

/** The palette of a theme, 0 light or 1 dark, that counts for the user; undefined without one. */
function paletteOf(style) {
    return model.palettes?.filter((palette) => palette.style === style).at(-1);
}

/** "config/events.xml:12:5", as a link to the line. Nothing for a place that is not known. */
function placeLink(at) {
    return at && lineLink(at, `${model.sources[at[0]].name}:${at[1]}:${at[2]}`);
}

/** "line 12", the same where the file is known. */
function lineLink(at, text = `line ${at?.[1]}`) {
    return at && h('a', {class: 'place',
        href: hashOf('source', `${model.sources[at[0]].name}:${at[1]}`)}, text);
}

/** Whether the point is in the place; without an end the line counts. */
function holds(place, [file, line, column]) {
    const [inFile, fromLine, fromColumn, toLine, toColumn] = place;
    if (file !== inFile)
        return false;
    if (toLine === undefined)
        return line === fromLine;
    return (line > fromLine || (line === fromLine && column >= fromColumn)) &&
        (line < toLine || (line === toLine && column <= toColumn));
}

/** The numbers of the findings by file and line. */
function linesOfFindings() {
    return once('lines of findings', () => {
        const lines = new Map();
        model.findings.forEach((finding, index) => {
            const key = `${finding.at[0]}:${finding.at[1]}`;
            if (!lines.has(key))
                lines.set(key, []);
            lines.get(key).push(index);
        });
        return lines;
    });
}

/** The numbers of the findings about the thing at a place, in the order of the list. */
function findingsAt(at) {
    if (!at)
        return [];
    const lines = linesOfFindings();
    const found = [];
    for (let line = at[1]; line <= (at[3] ?? at[1]); ++line)
        found.push(...(lines.get(`${at[0]}:${line}`) ?? []));
    return found.filter((index) => holds(at, model.findings[index].at));
}

/** What is to be seen beside a thing: links to the findings about it; nothing without any. */
function findingMarks(at) {
    return findingsAt(at).map((index) => {
        const {rule, severity, message} = model.findings[index];
        return h('a', {class: `mark ${severity}`, href: hashOf('findings', index + 1),
            title: visible(message)}, rule.startsWith('unused-') ? 'unused' : severity);
    });
}
