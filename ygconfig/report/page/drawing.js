// SPDX-License-Identifier: MIT
// One page as a picture with what belongs to it: the window's size, the slots, the tree of its
// panels and elements, and the details of the one that is chosen.
//
// In the SVG each rectangle of layOut is a group that can be checked:
//   <g data-kind="window|panel|slot|reuse|element|bar|rest" data-path="0.2.e1"
//      data-panel=NUMBER | data-element=NUMBER data-x data-y data-width data-height
//      data-content-width data-content-height>
// Groups are nested as the boxes are; the numbers are those of the model's lists, the lengths
// points of the window. The content's lengths stand at scroll panels whose children fill more than
// the panel itself; these are clipped. data-tight marks a box whose sizes cannot hold.

const windowSizes = [[1280, 800], [1920, 1080], [1024, 768]];
// In pixels of the screen.
const letterHeight = 11;
const lineHeight = 13;
const leastDrawingWidth = 520;
const paperWidth = 680;
const mostOfElsewhere = 40;

/** What the drawings take from a palette, and the keys that are looked for, the best first. */
const drawingRoles = {
    ground: {title: 'Window', words: [/window.*(back|ground|底)/i,
        /^(?!.*text).*(background|底色|背景)/i, /窗/]},
    panel: {title: 'Panels', words: [/^panel.*(back|ground|底)/i, /panel.*(back|ground)|面板/i]},
    border: {title: 'Borders', words: [/^panel.*border/i, /border|边框|边线/i]},
    bar: {title: 'Split bars', words: [/split|分割/i, /divider|separator|分隔/i]},
    text: {title: 'Text', words: [/^(panel|window).*text$/i, /text$|文字|字色/i, /text/i]},
};
const plainColours = [
    {ground: '#e8ebef', panel: '#ffffff', border: '#9aa5b3', bar: '#cfd6de', text: '#1c232d'},
    {ground: '#12161b', panel: '#1b2027', border: '#55606d', bar: '#38414c', text: '#e6ebf1'},
];

function lightOf(colour) {
    const parts = [1, 3, 5].map((at) => parseInt(colour.slice(at, at + 2), 16) / 255)
        .map((part) => part <= 0.04045 ? part / 12.92 : ((part + 0.055) / 1.055) ** 2.4);
    return 0.2126 * parts[0] + 0.7152 * parts[1] + 0.0722 * parts[2];
}

function contrastOf(one, other) {
    const [dark, bright] = [lightOf(one), lightOf(other)].sort((a, b) => a - b);
    return (bright + 0.05) / (dark + 0.05);
}

function clearestOn(ground, colours) {
    return colours.reduce((best, colour) =>
        contrastOf(colour, ground) > contrastOf(best, ground) ? colour : best);
}

/** The opaque colours of a palette by their keys. */
function opaqueKeys(palette) {
    const colours = new Map((palette?.colors ?? []).map(({name, color}) => [name, color]));
    return new Map((palette?.colorKeys ?? []).map(({key, name}) => [key, colours.get(name)])
        .filter(([, colour]) => /^#[0-9a-f]{6}ff$/i.test(colour ?? ''))
        .map(([key, colour]) => [key, colour.slice(0, 7)]));
}

/** The colours of the drawings in a theme, and the key that each is from; absent for plain ones. */
function drawingColours(theme) {
    const palette = paletteOf(theme);
    const keys = opaqueKeys(palette);
    const own = choices('pages').colours?.[theme] ?? {};
    const colours = {...plainColours[theme]};
    const from = {};
    const take = (role, key) => {
        if (!keys.has(key))
            return false;
        colours[role] = keys.get(key);
        from[role] = key;
        return true;
    };
    const declared = [...(palette?.pairs ?? [])]
        .sort((one, other) => other.ratio - one.ratio);
    for (const [role, {words}] of Object.entries(drawingRoles)) {
        if (own[role] === '' || take(role, own[role]))
            continue;
        const onPanels = role !== 'text' ? []
            : declared.filter(({ground}) => ground === from.panel).map(({text}) => text);
        [...onPanels.filter((key) => words.some((word) => word.test(key))),
            ...words.flatMap((word) => [...keys.keys()].filter((key) => word.test(key))),
            ...onPanels].some((key) => take(role, key));
    }
    const contrast = contrastOf(colours.text, colours.panel);
    const readable = contrast >= 4.5 ? colours.text
        : clearestOn(colours.panel, ['#000000', '#ffffff']);
    const instead = readable === colours.text ? null
        : `Text of ${from.text ?? 'the plain colour'} would have a contrast of ` +
            `${contrast.toFixed(2)} on the panels, so it is drawn in ${readable}.`;
    const face = (palette?.fonts ?? []).find(({name}) => /text|正文|normal/i.test(name)) ??
        palette?.fonts?.[0];
    return {...colours, from, instead, text: readable, keys: [...keys.keys()],
        warning: clearestOn(colours.panel, ['#b3202a', '#ff8c86']),
        chosen: clearestOn(colours.panel, ['#0b57c2', '#7ab4ff']),
        font: face?.faceName};
}

function windowSize() {
    const {width, height} = choices('pages').size ?? {};
    return {width: width ?? windowSizes[0][0], height: height ?? windowSizes[0][1]};
}

// ---- Words ----

function nameOfBox(box) {
    if (box.kind === 'element')
        return box.record.elementName ?? '(no name)';
    if (box.kind === 'window')
        return 'The page';
    return box.record?.panelName ?? '(no name)';
}

function kindOfBox(box) {
    return box.kind === 'slot' ? `slot ${box.slot.group ?? '(no group)'}: ` +
        (box.slot.member ?? 'main file\u2019s member') : box.kind === 'reuse' ? 'reuse panel'
        : box.kind;
}

/** What is special about a panel or an element, in words. */
function marksOf(box, focus) {
    const {record} = box;
    if (box.kind === 'element')
        return record.isFristReponder ? ['first responder'] : [];
    const extent = box.content && (record.paneVertical ? box.content.height : box.content.width);
    return [
        box.kind === 'slot' && kindOfBox(box),
        box.kind === 'reuse' && 'reuse',
        focus !== undefined && record.panelName === focus && 'focus',
        record.isEditable && 'editable',
        record.isScrollView && (extent ? `scrolls, ${extent} in all` : 'scrolls'),
        record.foldPosition !== null && `folds ${record.foldPosition}`,
        record.switchExpandPanelName !== null && `expands to ${record.switchExpandPanelName}`,
        record.displayBorders !== null && `border ${record.displayBorders}`,
        record.excuteCommandInfo !== null && `command ${record.excuteCommandInfo}`,
    ].filter(Boolean);
}

function marked(box, focus) {
    const marks = marksOf(box, focus);
    return nameOfBox(box) + (marks.length > 0 ? ` [${marks.join(', ')}]` : '');
}

function elementLines({record}) {
    return [
        record.elementParam,
        record.elementProperty,
        record.elementEvent !== null ? `event ${record.elementEvent}` : null,
        record.elementUuid !== null ? `uuid ${record.elementUuid}` : null,
    ].filter((line) => line !== null && line !== '');
}

function titleOf(box, focus) {
    const named = {bar: 'Split bar', rest: 'Nothing is here', window: 'The page'}[box.kind];
    const lines = named ? [named] : box.kind === 'element' ? [marked(box), ...elementLines(box)]
        : [`${kindOfBox(box)} ${marked(box, focus)}`];
    return [...lines, `${box.width} \u00d7 ${box.height}`, ...box.warnings];
}

// ---- The picture ----

let drawingCount = 0;

/** The SVG of a laid out page at a width in pixels. */
function picture(page, {label, width, focus, chosenPath, theme}) {
    const unit = page.width / width;
    const colours = drawingColours(theme);
    const hatch = `hatch-${++drawingCount}`;
    const paint = {unit, colours, hatch, focus, chosen: boxesTo(page, chosenPath ?? '') ?? []};
    return svg('svg', {class: 'page-drawing', viewBox: `0 0 ${page.width} ${page.height}`,
        role: 'img', 'aria-label': label, 'font-size': letterHeight * unit,
        'font-family': [colours.font && JSON.stringify(colours.font), 'system-ui',
            '"Noto Sans CJK SC"', '"WenQuanYi Micro Hei"', 'sans-serif'].filter(Boolean).join(', ')},
    svg('defs', null, svg('pattern', {id: hatch, width: 12 * unit, height: 12 * unit,
        patternUnits: 'userSpaceOnUse', patternTransform: 'rotate(45)'},
    svg('rect', {width: 1.5 * unit, height: 12 * unit, fill: colours.warning, opacity: 0.5}))),
    boxGroup(page, paint, []));
}

function boxGroup(box, paint, above) {
    const {unit, colours, hatch, focus} = paint;
    const names = box.panel === undefined ? above : [...above, marked(box, focus)];
    const isLeaf = box.children.length === 0 || box.width === 0 || box.height === 0;
    // The names of panels stand where their corner is: in the first thing in them that has room.
    const first = box.children.find((child) => hasRoom(child, unit)) ??
        box.children.find((child) => child.width > 0 && child.height > 0);
    const children = box.children.map((child) =>
        boxGroup(child, paint, child === first ? names : []));
    const isChosen = paint.chosen.at(-1) === box && box.path !== '';
    return svg('g', {
        'data-kind': box.kind, 'data-path': box.path, 'data-panel': box.panel,
        'data-element': box.element, 'data-x': box.x, 'data-y': box.y, 'data-width': box.width,
        'data-height': box.height, 'data-content-width': box.content?.width,
        'data-content-height': box.content?.height, 'data-tight': box.isTight},
    svg('title', null, inLines(titleOf(box, focus))),
    outline(box, {fill: fillOf(box, colours), ...strokeOf(box, paint)}, unit),
    box.content ? clipped(box, paint, children) : children,
    isLeaf && leafText(box, names, paint),
    borders(box, paint),
    box.isTight && [outline(box, {fill: `url(#${hatch})`}, 0),
        outline(box, {fill: 'none', stroke: colours.warning, 'stroke-width': 2 * unit}, 2 * unit)],
    isChosen && outline(box, {fill: 'none', stroke: colours.chosen, 'stroke-width': 3 * unit},
        3 * unit));
}

/** Whether a line of text can be read in it. */
function hasRoom({kind, width, height}, unit) {
    return kind !== 'bar' && kind !== 'rest' && height >= (lineHeight + 2) * unit &&
        width >= 4 * letterHeight * unit;
}

function outline(box, attributes, thickness) {
    const inset = Math.min(thickness / 2, box.width / 2, box.height / 2);
    return svg('rect', {x: box.x + inset, y: box.y + inset, width: box.width - 2 * inset,
        height: box.height - 2 * inset, ...attributes});
}

function fillOf(box, colours) {
    if (box.kind === 'bar')
        return colours.bar;
    return box.kind === 'window' || box.kind === 'rest' ? colours.ground : colours.panel;
}

function strokeOf(box, {unit, colours}) {
    return {stroke: box.kind === 'bar' ? 'none' : colours.border, 'stroke-width': unit,
        'stroke-dasharray': box.kind === 'rest' ? `${unit} ${4 * unit}` : null};
}

/** The children of a scroll panel, moved so that what is chosen in it can be seen. */
function clipped(box, {unit, colours, chosen}, children) {
    const inner = chosen[chosen.indexOf(box) + 1];
    const isIn = chosen.includes(box) && inner;
    const moved = (side, length) => isIn ? Math.max(0, Math.min(chosen.at(-1)[side] - box[side],
        box.content[length] - box[length])) : 0;
    const x = box.x + moved('x', 'width');
    const y = box.y + moved('y', 'height');
    const isVertical = box.content.height > box.height;
    const side = isVertical ? 'height' : 'width';
    const share = box[side] / box.content[side];
    const begin = (isVertical ? y - box.y : x - box.x) * share;
    const thick = 5 * unit;
    return [
        svg('svg', {x: box.x, y: box.y, width: box.width, height: box.height,
            viewBox: `${x} ${y} ${box.width || 1} ${box.height || 1}`, overflow: 'hidden'},
        children),
        svg('rect', {class: 'scroll-mark', fill: colours.text, opacity: 0.6, rx: thick / 2,
            ...(isVertical ? {x: box.x + box.width - thick, y: box.y + begin, width: thick,
                height: box.height * share} : {x: box.x + begin, y: box.y + box.height - thick,
                width: box.width * share, height: thick})}),
    ];
}

/** The borders that a panel asks for, and those of slots and reuse panels, over what is in it. */
function borders(box, {unit, colours}) {
    if (box.panel === undefined)
        return null;
    const {isBorderRaduis, isBorderRightAngle, displayBorders} = box.record;
    const thick = 2 * unit;
    const {x, y, width, height} = box;
    const sides = {left: [x, y, x, y + height], right: [x + width, y, x + width, y + height],
        top: [x, y, x + width, y], bottom: [x, y + height, x + width, y + height]};
    const inset = {left: [1, 0], right: [-1, 0], top: [0, 1], bottom: [0, -1]};
    const dashes = {slot: [8, 4], reuse: [2, 3]}[box.kind];
    return [
        dashes && outline(box, {fill: 'none', stroke: colours.text, 'stroke-width': 1.5 * unit,
            'stroke-dasharray': dashes.map((length) => length * unit).join(' ')}, 1.5 * unit),
        (isBorderRaduis || isBorderRightAngle) && outline(box, {fill: 'none',
            stroke: colours.border, 'stroke-width': thick,
            rx: isBorderRaduis ? Math.min(8 * unit, width / 2, height / 2) : 0}, thick),
        (displayBorders ?? '').split(/[;,|\s]+/).filter((side) =>
            Object.hasOwn(sides, side)).map((side) => {
            const [x1, y1, x2, y2] = sides[side];
            const [right, down] = inset[side].map((step) => step * thick / 2);
            return svg('line', {x1: x1 + right, y1: y1 + down, x2: x2 + right, y2: y2 + down,
                stroke: colours.text, 'stroke-width': thick});
        }),
    ];
}

/** The lines that fit: the names of the panels that begin here, and what the element shows. */
function leafText(box, names, {unit, colours}) {
    const room = Math.floor((box.height - 2 * unit) / (lineHeight * unit));
    if (box.kind === 'bar' || room < 1 || box.width < 16 * unit)
        return null;
    const around = names.length > 0 ? [{text: names.join(' \u203a '), quiet: true}] : [];
    const own = box.kind === 'element'
        ? [{text: marked(box), bold: true}, ...elementLines(box).map((text) => ({text}))]
        : box.kind === 'rest' ? [{text: 'nothing here', quiet: true}] : [];
    // In one line the element goes first, but for what its panels are.
    const marks = names.flatMap((name) => /\[.*\]$/s.exec(name) ?? []);
    const lines = room === 1 && own.length > 0
        ? [{text: [...marks, ...own.map(({text}) => text)].join(' '), bold: true}]
        : [...around, ...own];
    const columns = Math.ceil(box.width / unit / letterHeight * 3) + 1;
    return svg('svg', {x: box.x, y: box.y, width: box.width, height: box.height,
        overflow: 'hidden', class: 'leaf-text'},
    lines.slice(0, room).map(({text, bold, quiet}, line) => svg('text', {x: 4 * unit,
        y: (line + 1) * lineHeight * unit - unit, fill: colours.text,
        'font-weight': bold && 'bold', 'font-style': quiet && 'italic'},
    shortened(text, columns))));
}

// ---- What stands around it ----

/**
 * A drawn page. `page` is {key, prefix, label, panels, focus, shown, before}: the key under which
 * the reader's choice is kept, what the identifiers begin with, what the picture is called, the
 * panels, the panel with the focus, the panels that stand in slots, and what `before(boxes, redraw)`
 * gives to stand above. The page is drawn when it is known how wide it can be.
 */
function drawnPage(page) {
    const paths = choices('pages').chosenPaths ??= {};
    const parts = {
        controls: h('div', {class: 'controls drawn-controls'}),
        before: h('div', {class: 'controls drawn-controls'}),
        drawing: h('div', {class: 'scrolls drawing', tabindex: 0, role: 'region',
            'aria-label': `Drawing of ${visible(page.label)}`}),
        said: h('div', {class: 'problems'}),
        tree: h('div', {class: 'tree'}),
        details: h('div', {class: 'box-details', 'aria-live': 'polite'}),
    };
    let laidOut = null;
    const redraw = (what = 'all') => {
        if (what === 'all') {
            laidOut = layOut(model.layout, page.panels, windowSize(), page.shown());
            parts.said.replaceChildren(...saidOf(laidOut, choose));
            parts.tree.replaceChildren(h('h3', null, 'Panels and elements'),
                h('ul', null, treeItems(laidOut, choose)));
            parts.before.replaceChildren(...[page.before(laidOut, redraw)].flat(Infinity)
                .filter(Boolean));
        }
        const width = Math.max(leastDrawingWidth, parts.drawing.clientWidth || paperWidth);
        parts.drawing.replaceChildren(picture(laidOut, {label: page.label, width,
            focus: page.focus, chosenPath: paths[page.key], theme: chosen.theme}));
        showChosen(laidOut, page, parts, paths[page.key], choose);
    };
    const choose = (path) => {
        paths[page.key] = path;
        redraw('picture');
    };
    parts.controls.append(...sizeControls(page.prefix, redraw), ...colourControls(page.prefix,
        () => redraw('picture')));
    parts.drawing.addEventListener('click', (event) => {
        const group = event.target.closest('[data-panel], [data-element]');
        if (group)
            choose(group.dataset.path);
    });
    let width = 0;
    new ResizeObserver(() => {
        if (Math.abs(parts.drawing.clientWidth - width) < 8)
            return;
        width = parts.drawing.clientWidth;
        redraw('picture');
    }).observe(parts.drawing);
    redraw();
    return {
        nodes: [parts.before, parts.controls, parts.drawing, parts.said,
            h('div', {class: 'tree-and-details'}, parts.tree, parts.details)],
        redraw,
        chooseWhere(isIt) {
            let found;
            eachBox(laidOut, (box) => {
                found ??= isIt(box) ? box : undefined;
            });
            if (found)
                choose(found.path);
        },
    };
}

function sizeControls(prefix, redraw) {
    const pages = choices('pages');
    const take = (width, height) => {
        const {least, most} = windowLimits;
        const within = (length) => Math.min(most, Math.max(least, Math.round(length) || least));
        pages.size = {width: within(width), height: within(height)};
        inputs.forEach((input, at) => {
            input.value = Object.values(windowSize())[at];
        });
        presets.querySelector('select').value = Object.values(windowSize()).join('x');
        redraw();
    };
    const texts = windowSizes.map(([width, height]) => ({value: `${width}x${height}`,
        text: `${width} \u00d7 ${height}`}));
    const presets = choice('Window', [...texts, {value: 'own', text: 'own size'}],
        texts.find(({value}) => value === Object.values(windowSize()).join('x'))?.value ?? 'own',
        (value) => value === 'own' ? inputs[0].focus() : take(...value.split('x').map(Number)));
    const inputs = ['width', 'height'].map((side) => h('input', {type: 'number',
        id: `${prefix}-${side}`, min: windowLimits.least, max: windowLimits.most,
        value: windowSize()[side], 'aria-label': `Window ${side} in points`,
        onchange: () => take(...inputs.map((input) => Number(input.value)))}));
    presets.querySelector('select').id = `${prefix}-size`;
    return [presets, h('span', {class: 'own-size'}, inputs[0], ' \u00d7 ', inputs[1])];
}

function colourControls(prefix, redraw) {
    const pages = choices('pages');
    const box = h('details', {class: 'colours', ontoggle: () => {
        if (box.open)
            fillColours();
    }}, h('summary', null, 'Colours of the drawing'));
    const fillColours = () => {
        const colours = drawingColours(chosen.theme);
        box.replaceChildren(box.firstChild, h('div', {class: 'controls drawn-controls'},
            Object.entries(drawingRoles).map(([role, {title}]) => {
                const list = choice(title, [{value: '', text: 'plain'},
                    ...colours.keys.map((key) => ({value: key, text: key}))],
                colours.from[role] ?? '', (key) => {
                    const own = (pages.colours ??= {})[chosen.theme] ??= {};
                    own[role] = key;
                    fillColours();
                    redraw();
                });
                list.querySelector('select').id = `${prefix}-colour-${role}`;
                return list;
            })),
        h('p', {class: 'quiet'}, colours.instead ?? '', ' ', colours.keys.length === 0
            ? 'The palette of this theme has no opaque colour keys, so plain colours are used.'
            : 'The keys are the application\u2019s own; those that are taken were found by words ' +
                'in their names.'));
    };
    themeListeners.add(() => {
        if (box.open && box.isConnected)
            fillColours();
    });
    return [box];
}

/** What cannot be as it is written, and what is not drawn. */
function saidOf(laidOut, choose) {
    const items = [];
    eachBox(laidOut, (box) => items.push(...box.warnings.map((sentence) => ({box, sentence}))));
    const shownItems = items.slice(0, 50);
    return [
        h('p', {class: 'quiet'}, 'A schematic view of the sizes in the files, not the ' +
            'application\u2019s pixels.'),
        laidOut.isCut && h('p', {class: 'said'}, `This page has more than ${mostBoxes} panels and ` +
            `elements, or more than ${mostLevels} levels; the first ${laidOut.boxes} are drawn.`),
        items.length > 0 && h('ul', {class: 'said', 'aria-label': 'What does not fit'},
            shownItems.map(({box, sentence}) => h('li', null, sentence, ' ',
                box.path !== '' && h('button', {type: 'button',
                    onclick: () => choose(box.path)}, 'Show'))),
            items.length > shownItems.length && h('li', null,
                `\u2026 and ${items.length - shownItems.length} more.`)),
    ].filter(Boolean);
}

/** The tree as lists in lists; bars and what is empty are not in it. */
function treeItems(box, choose) {
    return box.children.filter(({kind}) => kind !== 'bar' && kind !== 'rest').map((child) => {
        const inner = treeItems(child, choose);
        return h('li', null, h('button', {type: 'button', 'data-path': child.path,
            onclick: () => choose(child.path)},
        h('span', {class: 'quiet'}, child.kind === 'slot' ? 'slot' : child.kind), ' ',
        h('span', {class: 'name'}, nameOfBox(child)), ' ',
        child.kind === 'element' && child.record.elementUuid !== null &&
            h('span', {class: 'quiet name'}, child.record.elementUuid)),
        findingMarks(child.record.at), inner.length > 0 && h('ul', null, inner));
    });
}

function showChosen(laidOut, page, parts, path, choose) {
    for (const button of parts.tree.querySelectorAll('button[aria-current]'))
        button.removeAttribute('aria-current');
    const way = path === undefined || path === '' ? undefined : boxesTo(laidOut, path);
    if (!way) {
        parts.details.replaceChildren(h('p', {class: 'quiet'}, 'Choose a panel or an element in ' +
            'the drawing or in the list.'));
        return;
    }
    const button = parts.tree.querySelector(`button[data-path="${path}"]`);
    button?.setAttribute('aria-current', 'true');
    // Within the tree alone: the reader looks at the drawing.
    const {tree} = parts;
    const below = (button ?? tree).getBoundingClientRect().top - tree.getBoundingClientRect().top;
    if (below < 0 || below > tree.clientHeight - 30)
        tree.scrollTop += below - tree.clientHeight / 2;
    parts.details.replaceChildren(...[boxDetails(way, page, laidOut, choose)].flat(Infinity)
        .filter(Boolean));
}

function boxDetails(way, page, laidOut, choose) {
    const box = way.at(-1);
    const {record} = box;
    const isElement = box.kind === 'element';
    const fields = model.layout.fields[isElement ? 'element' : 'panel'];
    const usual = model.layout.defaults[isElement ? 'element' : 'panel'];
    const own = model.layout[isElement ? 'elements' : 'panels'][box.element ?? box.panel];
    const isUsual = ([field]) => own[field] === undefined && !(field in own);
    const row = ([field, attribute, sentence]) => [
        h('span', {title: sentence}, attribute), field,
        fieldValue(field, record[field] ?? usual[field], laidOut, choose)];
    return [
        h('h3', null, h('span', {class: 'quiet'}, kindOfBox(box)), ' ',
            h('span', {class: 'name'}, nameOfBox(box))),
        h('p', null, placeLink(record.at) ?? h('span', {class: 'quiet'},
            'Written by a pattern, so that it is in no file.'), findingMarks(record.at)),
        h('p', null, `${box.width} \u00d7 ${box.height} at ${box.x}, ${box.y}`,
            box.content && `, content ${box.content.width} \u00d7 ${box.content.height}`),
        way.length > 2 && h('p', {class: 'quiet'}, 'In ', way.slice(1, -1).map((outer, at) => [
            at > 0 && ' \u203a ', h('button', {type: 'button', class: 'link',
                onclick: () => choose(outer.path)}, nameOfBox(outer))])),
        !isElement && marksOf(box, page.focus).length > 0 &&
            h('p', null, marksOf(box, page.focus).join(', ')),
        box.warnings.length > 0 && h('ul', {class: 'said'}, box.warnings.map((sentence) =>
            h('li', null, sentence))),
        table('Attributes', ['Attribute', 'Field', 'Value'],
            fields.filter((field) => !isUsual(field)).map(row)),
        h('details', null, h('summary', null, 'Attributes with their usual value'),
            table('Usual values', ['Attribute', 'Field', 'Value'], fields.filter(isUsual)
                .map(row))),
        isElement ? null : elsewhere(box, page),
    ];
}

function fieldValue(field, value, laidOut, choose) {
    if (value === null || value === undefined)
        return h('span', {class: 'quiet'}, 'none');
    if (field === 'elementEvent')
        return h('a', {href: hashOf('events', 'group', value)}, value);
    if (field === 'excuteCommandInfo')
        return h('a', {href: hashOf('events', 'command', value)}, value);
    if (field === 'eventDispathDestArray' || field === 'eventDispathSrcArray')
        return h('ul', {class: 'names'}, value.map((uuid) => h('li', null, toBox(uuid, laidOut,
            choose, (box) => box.kind === 'element' && box.record.elementUuid === uuid))));
    if (field === 'switchExpandPanelName')
        return toBox(value, laidOut, choose, (box) => box.record?.panelName === value);
    return value === '' ? '""' : String(value);
}

/** A name as a button that chooses what it names on this page, or as text if that is not here. */
function toBox(name, laidOut, choose, isIt) {
    let found;
    eachBox(laidOut, (box) => {
        found ??= isIt(box) ? box : undefined;
    });
    return found ? h('button', {type: 'button', class: 'link', onclick: () => choose(found.path)},
        name) : name === '' ? '""' : name;
}

/** Where a panel stands that pages share. */
function elsewhere(box, page) {
    const pages = pagesOfPanel(box.panel);
    const isShared = box.kind === 'reuse' || box.kind === 'slot';
    if (!isShared || pages.length === 0)
        return null;
    return [
        h('h4', null, `Stands in ${counted(pages.length, 'page')}`),
        h('ul', {class: 'names'}, pages.slice(0, mostOfElsewhere).map((each) => h('li', null,
            each.key === page.key ? h('span', {class: 'quiet'}, visible(each.name), ' (this page)')
                : h('a', {href: each.hash}, each.name))),
        pages.length > mostOfElsewhere && h('li', null,
            `\u2026 and ${pages.length - mostOfElsewhere} more.`)),
    ];
}

/** The pages that hold a panel, by going up from it. */
function pagesOfPanel(panel) {
    const above = once('panels above', () => {
        const panels = new Map();
        const pages = new Map();
        const note = (map, number, holder) => {
            if (!map.has(number))
                map.set(number, []);
            map.get(number).push(holder);
        };
        model.layout.panels.forEach(({panels: inner = []}, number) =>
            inner.forEach((each) => note(panels, each, number)));
        model.layout.pages.forEach((page, number) =>
            page.panels.forEach((each) => note(pages, each, number)));
        return {panels, pages};
    });
    const met = new Set([panel]);
    const found = new Set();
    for (const number of met) {
        for (const page of above.pages.get(number) ?? [])
            found.add(page);
        for (const holder of above.panels.get(number) ?? [])
            met.add(holder);
    }
    return [...found].sort((one, other) => one - other).map((number) => {
        const page = model.layout.pages[number];
        return {name: page.name, ...pageAddress(page.source, page.name)};
    });
}

/** The hash of something that is drawn, and the key under which choices about it are kept. */
function pageAddress(source, name, member) {
    const parts = source === 'style' ? [name] : member === undefined ? [name, source]
        : [name, source, member];
    return {hash: hashOf('pages', ...parts), key: JSON.stringify(parts)};
}
