// SPDX-License-Identifier: MIT
// Both themes side by side: contrast, colours, fonts, images, and what lint finds in them.

const themeTitles = ['Light theme', 'Dark theme'];

/**
 * How colours look to people who lack one kind of cone: matrices for linear RGB by Machado,
 * Oliveira and Fernandes, "A Physiologically-based Model for Simulation of Color Vision
 * Deficiency", 2009, severity 1.
 */
const sights = {
    protanopia: [
        [0.152286, 1.052583, -0.204868], [0.114503, 0.786281, 0.099216],
        [-0.003882, -0.048116, 1.051998]],
    deuteranopia: [
        [0.367322, 0.860646, -0.227968], [0.280085, 0.672501, 0.047413],
        [-0.011820, 0.042940, 0.968881]],
    tritanopia: [
        [1.255528, -0.076749, -0.178779], [-0.078411, 0.930809, 0.147602],
        [0.004733, 0.691367, 0.303900]],
};

// Distances in CIE L*a*b*: what is well apart for most, and hardly apart for the others.
const wellApart = 25;
const hardlyApart = 8;

// Larger fonts are drawn in this size.
const mostPoints = 72;

let paletteTables = [];
let paletteFilter = null;

/** The palettes that are shown, light and dark; undefined where there is none. */
function shownPalettes() {
    return [0, 1].map((style) => choices('palette').shipped
        ? model.palettes?.find((palette) => palette.style === style && !palette.isUsers)
        : paletteOf(style));
}

function entriesNamed(palette, list, field = 'name') {
    return palette ? byName(`${palette.file} ${list}`, () => palette[list],
        (entry) => entry[field]) : new Map();
}

/** The names in either palette, in the order of the light one. */
function namesInBoth(palettes, list, field) {
    return [...new Set(palettes.flatMap((palette) => palette
        ? palette[list].map((entry) => entry[field]) : []))];
}

// ---- Colours ----

function swatch(color) {
    return h('span', {class: 'swatch seen', 'aria-hidden': 'true'},
        h('span', {style: {'background-color': color}}));
}

function colorText({color, alpha}) {
    const hex = color.slice(0, 7).toUpperCase();
    return alpha === undefined ? hex : `${hex} ${Number((100 * alpha).toPrecision(3))}%`;
}

function marksAndPlace(entry) {
    return h('span', {class: 'where'}, lineLink(entry.at), findingMarks(entry.at));
}

function colorCell(palette, name) {
    const color = entriesNamed(palette, 'colors').get(name);
    if (!color)
        return palette ? h('span', {class: 'quiet'}, 'none') : null;
    return [swatch(color.color), h('code', null, colorText(color)), marksAndPlace(color)];
}

function colorKeyCell(palette, key) {
    if (!palette)
        return null;
    const entry = entriesNamed(palette, 'colorKeys', 'key').get(key);
    const color = entry && entriesNamed(palette, 'colors').get(entry.name);
    if (color) {
        return [swatch(color.color), h('span', {class: 'name'}, entry.name), ' ',
            h('code', {class: 'quiet'}, colorText(color)), marksAndPlace(entry)];
    }
    return [swatch(palette.noColor), h('strong', null, entry
        ? ['no colour \u201c', h('span', {class: 'name'}, entry.name), '\u201d']
        : 'no such key'), ' ', h('span', {class: 'quiet'}, `shows ${palette.noColor.slice(0, 7)}`),
    entry && marksAndPlace(entry)];
}

/** A table with a row for each name of either palette. */
function themesTable(palettes, {title, kind, list, field = 'name', head, cell, textOf}) {
    const names = namesInBoth(palettes, list, field);
    const made = longTable(title, [head, ...themeTitles], names.map((name) => ({
        id: rowId('palette', kind, name),
        text: [name, ...palettes.map((palette) => {
            const entry = entriesNamed(palette, list, field).get(name);
            return entry ? textOf(entry) : '';
        })].join(' '),
        cells: () => [h('span', {class: 'name'}, name === '' ? '(empty)' : name),
            ...palettes.map((palette) => cell(palette, name))],
    })), {class: 'long themes'});
    paletteTables.push(made);
    return [h('h3', null, title, ' ', h('span', {class: 'count'}, names.length)), made.node];
}

// ---- Contrast ----

function pairSample(palette, pair) {
    const colorOf = (key) => entriesNamed(palette, 'colors').get(
        entriesNamed(palette, 'colorKeys', 'key').get(key)?.name)?.color ?? palette.noColor;
    const grounds = [['#ffffff', '#000000'][palette.style],
        ...[pair.over, pair.ground].filter((key) => key !== undefined).map(colorOf)];
    return svg('svg', {class: 'sample seen', 'aria-hidden': 'true', width: 84, height: 24},
        grounds.map((fill) => svg('rect', {width: 84, height: 24, fill})),
        svg('text', {x: 42, y: 17, 'text-anchor': 'middle', fill: colorOf(pair.text)},
            'Text \u6587\u5b57'));
}

function pairCell(palette, pair) {
    if (!palette)
        return null;
    if (!pair)
        return h('span', {class: 'quiet'}, 'not measured: a key or a colour is missing');
    return [pairSample(palette, pair), ' ', h('code', null, pair.ratioText), ' ',
    h('strong', {class: pair.passes ? 'passes' : 'fails'}, pair.passes ? 'passes' : 'too low')];
}

function contrastTable(palettes) {
    const keyOf = ({text, ground, over, minimum}) => JSON.stringify([text, ground, over, minimum]);
    const found = palettes.map((palette) => new Map((palette?.pairs ?? []).map((pair) =>
        [keyOf(pair), pair])));
    const pairs = [...new Map([...found[0], ...found[1]]).entries()];
    if (pairs.length === 0) {
        return h('p', {class: 'quiet'}, 'No pairs of colours are declared in ',
            h('code', null, 'contrast.json'), '.');
    }
    const made = longTable('Contrast of declared pairs', ['Pair', 'Needed', ...themeTitles],
        pairs.map(([key, pair]) => ({
            id: null,
            text: [pair.text, pair.ground, pair.over ?? ''].join(' '),
            cells: () => [[h('span', {class: 'name'}, pair.text), ' on ',
                h('span', {class: 'name'}, pair.ground),
                pair.over !== undefined && [' over ', h('span', {class: 'name'}, pair.over)],
                marksAndPlace(pair)], `${pair.minimum}:1`,
            ...palettes.map((palette, theme) => pairCell(palette, found[theme].get(key)))],
        })));
    paletteTables.push(made);
    return made.node;
}

// ---- Colour vision ----

function sightFilters() {
    return svg('svg', {class: 'filters', width: 0, height: 0, 'aria-hidden': 'true'},
        Object.entries(sights).map(([name, matrix]) =>
            svg('filter', {id: `sees-${name}`, 'color-interpolation-filters': 'linearRGB'},
                svg('feColorMatrix', {type: 'matrix',
                    values: `${matrix.map((row) => `${row.join(' ')} 0 0`).join(' ')} 0 0 0 1 0`}))));
}

function linearOf(color) {
    return [1, 3, 5].map((at) => {
        const share = parseInt(color.slice(at, at + 2), 16) / 255;
        return share <= 0.04045 ? share / 12.92 : ((share + 0.055) / 1.055) ** 2.4;
    });
}

function labOf([red, green, blue]) {
    const root = (value) => value > 216 / 24389 ? Math.cbrt(value) : (24389 / 27 * value + 16) / 116;
    const x = root((0.4124564 * red + 0.3575761 * green + 0.1804375 * blue) / 0.95047);
    const y = root(0.2126729 * red + 0.7151522 * green + 0.0721750 * blue);
    const z = root((0.0193339 * red + 0.1191920 * green + 0.9503041 * blue) / 1.08883);
    return [116 * y - 16, 500 * (x - y), 200 * (y - z)];
}

function distanceOf(one, other, matrix) {
    const [seen, otherSeen] = [one, other].map((color) => {
        const linear = linearOf(color);
        return labOf(matrix ? matrix.map((row) => Math.min(1, Math.max(0,
            row.reduce((sum, factor, at) => sum + factor * linear[at], 0)))) : linear);
    });
    return Math.hypot(...seen.map((value, at) => value - otherSeen[at]));
}

/** Opaque colours of keys of one view that are well apart for most and hardly apart as seen here. */
function confusedIn(palette, matrix) {
    const families = new Map();
    for (const {key, name} of palette.colorKeys) {
        const color = entriesNamed(palette, 'colors').get(name);
        const dot = key.lastIndexOf('.');
        if (!color || color.alpha !== undefined || dot < 0)
            continue;
        const family = key.slice(0, dot);
        if (!families.has(family))
            families.set(family, new Map());
        families.get(family).set(color.color, {key, color: color.color});
    }
    const confused = [];
    for (const family of families.values()) {
        const colors = [...family.values()].slice(0, 40);
        colors.forEach((one, at) => {
            for (const other of colors.slice(at + 1)) {
                if (distanceOf(one.color, other.color) >= wellApart &&
                    distanceOf(one.color, other.color, matrix) < hardlyApart)
                    confused.push([one, other]);
            }
        });
    }
    return confused;
}

function confusedList(palettes, sight) {
    const matrix = sights[sight];
    if (!matrix)
        return [];
    const lists = palettes.filter(Boolean).map((palette) => {
        const confused = confusedIn(palette, matrix);
        const title = `${themeTitles[palette.style]}: hard to tell apart with ${sight}`;
        return [h('h4', null, title), confused.length === 0
            ? h('p', null, 'No two colours of one view.')
            : h('ul', {class: 'plain'}, confused.slice(0, 100).map((pair) => h('li', null,
                pair.map(({key, color}, at) => [at > 0 && ' and ', swatch(color),
                    h('span', {class: 'name'}, key)])))),
        confused.length > 100 && h('p', {class: 'quiet'},
            `${confused.length - 100} further pairs are not listed.`)];
    });
    return [lists, h('p', {class: 'quiet'}, 'Compared are opaque colours of keys with the same ',
        `beginning: ${wellApart} or more apart in CIE L*a*b* for most people, and less than `,
        `${hardlyApart} as seen here.`)];
}

// ---- Fonts ----

/** Chinese characters in the texts of the layout, the first 24 different ones. */
function sampleText() {
    return once('sample text', () => {
        const found = new Set();
        const left = [model.layout, model.events];
        for (let at = 0; at < left.length && found.size < 24 && at < 200000; ++at) {
            const value = left[at];
            if (typeof value === 'string') {
                for (const character of value.match(/\p{Script=Han}/gu) ?? [])
                    found.add(character);
            } else if (value && typeof value === 'object') {
                for (const part of Object.values(value))
                    left.push(part);
            }
        }
        return found.size === 0 ? '\u6c38\u5b57\u516b\u6cd5' : [...found].slice(0, 24).join('');
    });
}

const localFaces = new Set();

/** The face by a name that is a family's, or a single face's. */
function familyOf(faceName) {
    const quoted = `"${faceName.replace(/["\\\n]/g, '\\$&')}"`;
    const local = `local ${faceName.replace(/[^\p{L}\p{N} -]/gu, '')}`;
    if (!localFaces.has(faceName)) {
        localFaces.add(faceName);
        document.fonts.add(new FontFace(local, `local(${quoted})`));
    }
    return `${quoted}, "${local}", sans-serif`;
}

function fontSample({faceName, pointSize}) {
    return h('span', {class: 'sample-text', lang: 'zh', style: {'font-family': familyOf(faceName),
        'font-size': `${Math.min(pointSize, mostPoints)}pt`}}, sampleText(), ' Aa 0123');
}

function fontFacts(font) {
    const isSubstitute = findingsAt(font.at).some((index) =>
        model.findings[index].rule === 'unknown-font-face');
    return [h('span', {class: 'name'}, `${font.faceName} ${font.pointSize}`),
        font.pointSize > mostPoints && h('span', {class: 'quiet'}, `, drawn in ${mostPoints}`),
        isSubstitute && h('strong', null, ' instead of \u201c',
            h('span', {class: 'name'}, font.asked ?? ''), '\u201d, which is not installed here')];
}

function fontCell(palette, name) {
    const font = entriesNamed(palette, 'fonts').get(name);
    if (!font)
        return palette ? h('span', {class: 'quiet'}, 'none') : null;
    return [fontFacts(font), h('br'), fontSample(font), marksAndPlace(font)];
}

function fontKeyCell(palette, key) {
    if (!palette)
        return null;
    const entry = entriesNamed(palette, 'fontKeys', 'key').get(key);
    const font = entry && entriesNamed(palette, 'fonts').get(entry.name);
    const facts = ({faceName, pointSize}) => h('span', {class: 'quiet'}, `${faceName} ${pointSize}`);
    return font
        ? [h('span', {class: 'name'}, entry.name), ' ', facts(font), marksAndPlace(entry)]
        : [h('strong', null, entry ? ['no font \u201c', h('span', {class: 'name'}, entry.name),
            '\u201d'] : 'no such key'), ' ', facts(palette.noFont), entry && marksAndPlace(entry)];
}

// ---- Images ----

/** The colours that images are drawn on: of a key that the reader chooses, or white and black. */
function groundOf(palette) {
    const entry = entriesNamed(palette, 'colorKeys', 'key').get(choices('palette').ground);
    const color = entry && entriesNamed(palette, 'colors').get(entry.name);
    return color?.color ?? ['#ffffff', '#000000'][palette?.style ?? 0];
}

function imageAt(image, factor, ground) {
    const [width, height] = [image.width * factor, image.height * factor];
    const cuts = Array.from({length: Math.min(image.strip, 200) - 1}, (_, at) =>
        svg('path', {d: `M ${(at + 1) * width / image.strip} 0 V ${height}`}));
    return h('span', {class: ground ? 'picture' : 'picture chequered',
        style: {'background-color': ground ?? 'transparent', width: `${width}px`,
            height: `${height}px`}},
    h('img', {src: image.data, alt: '', class: 'seen', width, height, decoding: 'async',
        style: {width: `${width}px`, height: `${height}px`}}),
    image.strip > 1 && svg('svg', {class: 'cuts', 'aria-hidden': 'true', width, height,
        viewBox: `0 0 ${width} ${height}`}, cuts));
}

function imageCell(palettes, palette, name) {
    if (!palette)
        return null;
    const image = entriesNamed(palette, 'images').get(name);
    if (!image)
        return h('span', {class: 'quiet'}, 'none');
    const points = `${image.width} \u00d7 ${image.height}`;
    const pixels = `${image.pixelWidth} \u00d7 ${image.pixelHeight}`;
    const grounds = [...palettes.map((each, style) => each ? groundOf(each)
        : ['#ffffff', '#000000'][style]), null];
    return [
        image.data && h('span', {class: image.width > 190 ? 'pictures wide' : 'pictures', role: 'img',
            'aria-label': `${visible(name)} at 1\u00d7 and 2\u00d7 on three grounds`},
        [1, 2].map((factor) => h('span', null, grounds.map((ground) =>
            imageAt(image, factor, ground))))),
        h('span', {class: 'facts-line'}, `${points} points`,
            points !== pixels && ` of ${pixels} pixels`,
            image.strip > 1 && `, ${image.strip} pieces if they are square`, image.file &&
            [', ', h('code', null, image.file)]),
        image.whyNoData && h('span', {class: 'facts-line'}, image.whyNoData),
        marksAndPlace(image)];
}

// ---- The view ----

const paletteRules = [
    ['In one theme only', ['missing-in-other-theme', 'name-in-one-theme', 'uneven-strips']],
    ['Images that are not read, or from elsewhere', ['unreadable-image', 'too-many-image-pixels',
        'too-many-image-bytes', 'image-outside-folder', 'missing-image-folder', 'no-image-folder']],
    ['Used by nothing', ['unused-palette-color', 'unused-palette-font', 'unused-image-file']],
];

function paletteFindings() {
    return paletteRules.map(([title, rules]) => {
        const found = model.findings.map((finding, index) => ({finding, index}))
            .filter(({finding}) => rules.includes(finding.rule));
        return h('details', {open: found.length > 0 && found.length <= 10},
            h('summary', null, `${title}: ${found.length}`),
            h('ul', null, found.slice(0, rowsAtOnce).map(({finding, index}) => h('li', null,
                h('a', {class: `mark ${finding.severity}`, href: hashOf('findings', index + 1)},
                    finding.severity), ' ', finding.message, ' ', placeLink(finding.at)))),
            found.length > rowsAtOnce && h('p', null, 'The others are in the list of findings.'));
    });
}

function paletteHead(palettes) {
    return h('ul', {class: 'plain'}, palettes.map((palette, style) => h('li', null,
        `${themeTitles[style]}: `, palette ? [h('code', null, palette.file), palette.isUsers
            ? h('strong', null, ' the user\u2019s own, which counts instead of the shipped one')
            : model.palettes.some((other) => other.isUsers && other.style === style)
                ? ' shipped; the user\u2019s own counts instead' : ' shipped'] : 'there is none')));
}

function groundKeys(palettes) {
    return namesInBoth(palettes, 'colorKeys', 'key').filter((key) => /ground/i.test(key));
}

function paletteControls(palettes, redraw) {
    const chosenHere = choices('palette');
    const choose = (member) => (value) => {
        chosenHere[member] = value;
        redraw(member);
    };
    return h('div', {class: 'controls'},
        choice('As seen with', [{value: '', text: 'full colour vision'},
            ...Object.keys(sights).map((value) => ({value, text: value}))],
        chosenHere.sight ?? '', choose('sight')),
        choice('Ground of images', [{value: '', text: 'white and black'},
            ...groundKeys(palettes).slice(0, 500).map((value) => ({value, text: visible(value)}))],
        chosenHere.ground, choose('ground')),
        model.palettes.some((palette) => palette.isUsers) && choice('Files',
            [{value: '', text: 'those that count'}, {value: 'shipped', text: 'shipped'}],
            chosenHere.shipped ?? '', choose('shipped')));
}

function paletteParts(palettes) {
    paletteTables = [];
    const contrast = contrastTable(palettes);
    const tables = [
        {title: 'Colour keys', kind: 'color-key', list: 'colorKeys', field: 'key', head: 'Key',
            cell: colorKeyCell, textOf: (entry) => entry.name},
        {title: 'Colours', kind: 'color', list: 'colors', head: 'Name', cell: colorCell,
            textOf: (entry) => entry.color},
        {title: 'Font keys', kind: 'font-key', list: 'fontKeys', field: 'key', head: 'Key',
            cell: fontKeyCell, textOf: (entry) => entry.name},
        {title: 'Fonts', kind: 'font', list: 'fonts', head: 'Name', cell: fontCell,
            textOf: (entry) => entry.faceName},
        {title: 'Images', kind: 'image', list: 'images', head: 'Name',
            cell: (palette, name) => imageCell(palettes, palette, name),
            textOf: (entry) => entry.file ?? ''},
    ].map((options) => themesTable(palettes, options));
    return [h('h3', null, 'Contrast'), contrast, tables];
}

function paletteContent(section) {
    const palettes = shownPalettes();
    choices('palette').ground ??= groundKeys(palettes)[0] ?? '';
    const parts = paletteParts(palettes);
    paletteFilter = filterBox('palette', paletteTables);
    const {sight} = choices('palette');
    const controls = paletteControls(palettes, (member) => {
        section.replaceChildren(...paletteContent(section));
        section.querySelectorAll('select')[['sight', 'ground', 'shipped'].indexOf(member)]?.focus();
    });
    section.dataset.sight = sight ?? '';
    return [sightFilters(), paletteHead(palettes), controls, paletteFilter.node,
        confusedList(palettes, sight), paletteFindings(), parts].flat(Infinity).filter(Boolean);
}

addView({
    name: 'palette',
    title: 'Palette',
    count: () => namesInBoth([0, 1].map(paletteOf), 'colorKeys', 'key').length,
    names: () => [
        ['colour key', 'color-key', 'colorKeys', 'key'], ['colour', 'color', 'colors', 'name'],
        ['font key', 'font-key', 'fontKeys', 'key'], ['font', 'font', 'fonts', 'name'],
        ['image', 'image', 'images', 'name'],
    ].flatMap(([kind, part, list, field]) => namesInBoth([0, 1].map(paletteOf), list, field)
        .map((name) => ({kind, name, hash: hashOf('palette', part, name),
            at: [1, 0].map((style) => entriesNamed(paletteOf(style), list, field).get(name)?.at)
                .find(Boolean)}))),
    draw: () => {
        if (!model.palettes?.length)
            return [h('p', null, 'The root has no palette that can be read.')];
        const section = h('div', {class: 'palette'});
        section.append(...paletteContent(section));
        return [section];
    },
    show: (section, parts) => {
        if (parts.length > 1)
            goToRow(rowId('palette', ...parts), paletteTables, paletteFilter);
    },
});
