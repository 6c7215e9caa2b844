// SPDX-License-Identifier: MIT
// From panels to rectangles: docs/report.md, "How sizes become rectangles", has the rules. Nothing
// here touches the document, so that it can be run and checked without one.

// In points: what stands between the children of a panel that has a split bar, a wide boundary.
const splitBar = 6;
const wideBound = 12;
// A page may hold the same panel a million times, and as deep as it likes.
const mostBoxes = 4000;
const mostLevels = 150;
const windowLimits = {least: 100, most: 10000};

/** A number of the model, in which an infinity is a text and what is not a number null. */
function numberOf(value) {
    if (value === 'inf' || value === '-inf')
        return value === 'inf' ? Infinity : -Infinity;
    return value ?? NaN;
}

/** The fields of a panel or an element, with those of a new one where it has none of its own. */
function panelRecord(layout, number) {
    return {...layout.defaults.panel, ...layout.panels[number]};
}

function elementRecord(layout, number) {
    return {...layout.defaults.element, ...layout.elements[number]};
}

const reuseNumbers = new WeakMap();

function isReusePanel(layout, number) {
    if (!reuseNumbers.has(layout))
        reuseNumbers.set(layout, new Set(layout.reuse.map((each) => each.panel)));
    return reuseNumbers.get(layout).has(number);
}

/** The name of a panel in a group. Absent where a later file has replaced the group since. */
function memberName(layout, group, panel) {
    return layout.groups.find((each) => each.name === group)?.members
        .find((member) => member.panel === panel)?.name;
}

/** 'Panel "main"', for sentences. */
function calledPanel({panelName}) {
    return panelName === null || panelName === undefined ? 'A panel without a name'
        : `Panel "${panelName}"`;
}

/** What a panel asks for along its parent's direction, and the sentences about what cannot be. */
function wishOf(record, warn) {
    const wish = {fixed: null, share: 1, least: 0, most: Infinity};
    const odd = (attribute, value) => warn(`${calledPanel(record)}: ${attribute} is ${value}, ` +
        'which is not a size; it counts as if it were not there.');
    const fixed = numberOf(record.fixSize);
    if (fixed >= 0 && fixed < Infinity)
        wish.fixed = Math.round(fixed);
    else if (!(fixed < 0) || fixed === -Infinity)
        odd('fix_size', fixed);
    for (const [field, attribute, part] of [['minSize', 'min_size', 'least'],
        ['maxSize', 'max_size', 'most']]) {
        const size = numberOf(record[field]);
        if (size > 0 && size < Infinity)
            wish[part] = Math.round(size);
        else if (size !== 0)
            odd(attribute, size);
    }
    if (wish.most < wish.least) {
        warn(`${calledPanel(record)}: max_size ${wish.most} is less than min_size ` +
            `${wish.least}; the smallest size counts.`);
        wish.most = wish.least;
    }
    const share = numberOf(record.splitScale);
    wish.share = share > 0 && share < Infinity ? share : 0;
    if (share !== wish.share) {
        warn(`${calledPanel(record)}: split_scale is ${share}, which is not a share; it counts ` +
            'as 0.');
    }
    return wish;
}

/** The sizes of wishes without a fixed size: shares of the space, none beyond its limits. */
function shareOut(space, wishes) {
    const sizes = new Array(wishes.length).fill(0);
    let open = wishes.map((wish, index) => ({...wish, index}));
    let left = space;
    while (open.length > 0) {
        const whole = open.reduce((sum, wish) => sum + wish.share, 0);
        let beyond = 0;
        for (const wish of open) {
            wish.wanted = whole > 0 ? left * (wish.share / whole) : 0;
            wish.taken = Math.max(wish.least, Math.min(wish.most, wish.wanted));
            beyond += wish.taken - wish.wanted;
        }
        // Those that the limits make larger go first if they take more than others give back.
        const isSettled = Math.abs(beyond) < 1e-9 || whole === 0;
        const settled = open.filter((wish) => isSettled ||
            (beyond > 0 ? wish.taken > wish.wanted : wish.taken < wish.wanted));
        for (const wish of settled) {
            sizes[wish.index] = wish.taken;
            left -= wish.taken;
        }
        open = open.filter((wish) => !settled.includes(wish));
    }
    return sizes;
}

/** Whole numbers whose sums are the rounded sums of the sizes. */
function rounded(sizes) {
    let sum = 0;
    let edge = 0;
    return sizes.map((size) => {
        sum += size;
        const next = Math.floor(sum + 0.5 + 1e-7);
        const whole = next - edge;
        edge = next;
        return whole;
    });
}

/** The sizes of the children of a panel: whole numbers, together at most the space. */
function divide(space, wishes, name, warn) {
    const needs = wishes.map((wish) => wish.fixed ?? wish.least);
    const need = needs.reduce((sum, size) => sum + size, 0);
    if (need > space) {
        warn(`${name}: what is in it needs ${need} and has ${space}; it is drawn smaller in ` +
            'proportion.', true);
        return rounded(needs.map((size) => size / need * space));
    }
    const sizes = wishes.map((wish) => wish.fixed ?? 0);
    const open = wishes.filter((wish) => wish.fixed === null);
    const free = space - sizes.reduce((sum, size) => sum + size, 0);
    if (open.length > 0 && open.every((wish) => wish.share === 0)) {
        warn(`${name}: the shares of what is in it are all 0; it is drawn with equal shares.`,
            true);
        open.forEach((wish) => {
            wish.share = 1;
        });
    }
    const shared = rounded(shareOut(free, open));
    let next = 0;
    return wishes.map((wish, index) => wish.fixed === null ? shared[next++] : sizes[index]);
}

/**
 * The rectangles of a page: a tree of boxes
 *   {kind, path, x, y, width, height, children, …}
 * kind is "window", "panel", "slot", "reuse", "element", "bar" or "rest", what is left empty. A box
 * of a record has its number in `panel` or `element` and all fields in `record`; `path` is the way
 * to it, "0.2.e1" for the second element of the third panel of the first one. The children of a box
 * fill it, or its content, {width, height}, if a scroll panel has one that is larger, and never
 * overlap. `warnings` are sentences; `isTight` marks a box whose sizes cannot hold.
 *
 * `shown` says which panel stands in a slot: by its path {panel, group, member}; only where a slot
 * of that group is, or anywhere if `isSlot` is set. A slot has {group, member, own} in `slot`; own
 * is the panel that the page has there. The answer has `boxes`, their number, and `isCut` if the
 * page has more than are drawn.
 */
function layOut(layout, panels, size, shown = new Map()) {
    const page = {kind: 'window', path: '', x: 0, y: 0, ...size, children: [], warnings: [],
        level: 0, boxes: 0, isCut: false};
    fillBox(layout, page, page, {panels, elements: [], isVertical: false, bar: 0, name: 'The page'},
        shown);
    // Boxes are filled in the order in which they are made, so that what is cut off is deepest.
    for (let next = [...page.children]; next.length > 0;) {
        const level = [];
        for (const box of next) {
            if (box.panel === undefined)
                continue;
            const {record} = box;
            const wide = record.isDispWideBound ? wideBound : 0;
            fillBox(layout, page, box, {
                panels: record.panels ?? [],
                elements: record.elements ?? [],
                isVertical: record.paneVertical,
                bar: Math.max(wide, record.isDisSplitSpace ? splitBar : 0),
                name: calledPanel(record),
            }, shown);
            level.push(...box.children);
        }
        next = level;
    }
    return page;
}

function childrenOf(layout, box, content, shown) {
    const at = (index) => box.path === '' ? `${index}` : `${box.path}.${index}`;
    return [
        ...content.elements.map((element, index) => ({kind: 'element', path: at(`e${index}`),
            element, record: elementRecord(layout, element)})),
        ...content.panels.map((own, index) => {
            const path = at(index);
            const ownRecord = panelRecord(layout, own);
            const choice = shown.get(path);
            const isChosen = choice && (choice.isSlot ||
                (ownRecord.isMagicPanels && ownRecord.magicPanelsName === choice.group));
            const panel = isChosen ? choice.panel : own;
            const slot = isChosen ? {group: choice.group, member: choice.member, own}
                : ownRecord.isMagicPanels ? {group: ownRecord.magicPanelsName,
                    member: memberName(layout, ownRecord.magicPanelsName, own), own} : undefined;
            return {kind: slot ? 'slot' : isReusePanel(layout, panel) ? 'reuse' : 'panel', path,
                panel, slot, record: isChosen ? panelRecord(layout, panel) : ownRecord};
        }),
    ];
}

function fillBox(layout, page, box, content, shown) {
    const warn = (sentence, isTight) => {
        box.warnings.push(sentence);
        box.isTight ||= Boolean(isTight);
    };
    const room = box.level < mostLevels ? mostBoxes - page.boxes : 0;
    const count = content.elements.length + content.panels.length;
    if (count > room)
        page.isCut = true;
    const elements = content.elements.slice(0, room);
    const children = childrenOf(layout, box,
        {elements, panels: content.panels.slice(0, room - elements.length)}, shown);
    if (children.length === 0)
        return;
    page.boxes += children.length;
    const inner = innerSize(box, content.isVertical, warn);
    const whole = content.isVertical ? inner.height : inner.width;
    const gaps = children.length - 1;
    const bar = Math.min(content.bar, Math.floor(whole / (2 * gaps + 1)));
    if (bar < content.bar && gaps > 0 && whole > 0)
        warn(`${content.name} has no room for its split bars.`, true);
    const wishes = children.map((child) => child.kind === 'element'
        ? {fixed: null, share: 1, least: 0, most: Infinity} : wishOf(child.record, warn));
    const sizes = divide(whole - bar * gaps, wishes, content.name, warn);
    const lost = sizes.filter((length, index) => length === 0 && wishes[index].fixed !== 0).length;
    if (lost > 0 && !box.isTight && whole > 0)
        warn(`${content.name}: ${lost} of its ${children.length} children have no space.`, true);
    placeChildren(box, inner, content.isVertical, children, sizes, bar);
}

/** The size in which the children of a box are laid out. */
function innerSize(box, isVertical, warn) {
    const inner = {width: box.width, height: box.height};
    if (!box.record?.isScrollView)
        return inner;
    const extent = numberOf(box.record.scrollSize);
    if (extent < 0)
        warn(`${calledPanel(box.record)}: scroll_size is ${extent}, which is not a size.`);
    const side = isVertical ? 'height' : 'width';
    inner[side] = Math.max(inner[side], extent);
    if (inner[side] > box[side])
        box.content = inner;
    return inner;
}

function placeChildren(box, inner, isVertical, children, sizes, bar) {
    let offset = 0;
    const add = (child, length) => {
        box.children.push({...child, ...(isVertical
            ? {x: box.x, y: box.y + offset, width: inner.width, height: length}
            : {x: box.x + offset, y: box.y, width: length, height: inner.height}),
        children: [], warnings: [], level: box.level + 1});
        offset += length;
    };
    children.forEach((child, index) => {
        if (index > 0 && bar > 0)
            add({kind: 'bar', path: `${child.path}.bar`}, bar);
        add(child, sizes[index]);
    });
    const rest = (isVertical ? inner.height : inner.width) - offset;
    if (rest > 0)
        add({kind: 'rest', path: `${box.path}.rest`}, rest);
}

/** The box at a path, and those around it: the page first. Absent when it is not drawn. */
function boxesTo(page, path) {
    const found = [page];
    for (let box = page; box.path !== path;) {
        box = box.children.find((child) => child.path === path ||
            path.startsWith(`${child.path}.`));
        if (!box)
            return undefined;
        found.push(box);
    }
    return found;
}

/** Calls `visit` for each box, a box before those in it. */
function eachBox(box, visit) {
    const pending = [box];
    while (pending.length > 0) {
        const next = pending.pop();
        visit(next);
        for (let at = next.children.length - 1; at >= 0; --at)
            pending.push(next.children[at]);
    }
}
