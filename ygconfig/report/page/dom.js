// SPDX-License-Identifier: MIT
// Making elements. Every text of the files comes to the page through here, as text and never as
// markup.

const svgNamespace = 'http://www.w3.org/2000/svg';

// Characters that show nothing or change the order of what is around them.
const unseen =
    /[\u0000-\u001f\u007f-\u009f\u00ad\u061c\u115f\u1160\u180e\u200b-\u200f\u2028-\u202e\u2060-\u206f\u3164\ufeff\ufff9-\ufffb]/g;

/** The text with characters that nobody can see written as their numbers. */
function visible(text) {
    return String(text).replace(unseen, (character) =>
        `\u27e8U+${character.codePointAt(0).toString(16).toUpperCase().padStart(4, '0')}\u27e9`);
}

// Attributes that are shown or read aloud.
const readOut = new Set(['aria-label', 'title', 'alt', 'placeholder', 'label']);

function fill(node, attributes, children) {
    for (const [name, value] of Object.entries(attributes ?? {})) {
        if (value === undefined || value === null || value === false)
            continue;
        if (name.startsWith('on'))
            node.addEventListener(name.slice(2), value);
        else if (name === 'style')
            setStyle(node, value);
        else
            node.setAttribute(name, value === true ? '' : readOut.has(name) ? visible(value) : value);
    }
    append(node, children);
    return node;
}

/** Sets properties one by one: the page allows no style attributes. */
function setStyle(node, properties) {
    for (const [name, value] of Object.entries(properties))
        node.style.setProperty(name, value);
}

/** Adds nodes and texts, and those in lists; nothing for null, undefined and false. */
function append(node, children) {
    for (const child of children.flat(Infinity)) {
        if (child instanceof Node)
            node.append(child);
        else if (child !== undefined && child !== null && child !== false)
            node.append(visible(child));
    }
}

/** An HTML element. An attribute "onclick" is a listener, "style" an object of properties. */
function h(name, attributes, ...children) {
    return fill(document.createElement(name), attributes, children);
}

/** An SVG element. */
function svg(name, attributes, ...children) {
    return fill(document.createElementNS(svgNamespace, name), attributes, children);
}

/** Texts, each on a line of its own where lines are shown. */
function inLines(texts) {
    return texts.flatMap((text, index) => index > 0 ? [new Text('\n'), text] : [text]);
}

/** A table with a caption and heads. A row is a list of cells, of which the first heads it. */
function table(caption, heads, rows, attributes) {
    return h('div', {class: 'scrolls', tabindex: 0, role: 'region', 'aria-label': caption},
        h('table', attributes,
            h('caption', null, caption),
            h('thead', null, h('tr', null, heads.map((head) => h('th', {scope: 'col'}, head)))),
            h('tbody', null, rows.map(([first, ...others]) =>
                h('tr', null, h('th', {scope: 'row'}, first),
                    others.map((cell) => h('td', null, cell)))))));
}

/** A choice of one of several values: {value, text}. */
function choice(label, values, chosen, onChoice) {
    const list = h('select', {onchange: () => onChoice(list.value)},
        values.map(({value, text}) => h('option', {value, selected: value === chosen}, text)));
    return h('label', {class: 'choice'}, h('span', null, label), list);
}

/** "1 page", "3 pages". */
function counted(count, one, several = `${one}s`) {
    return `${count} ${count === 1 ? one : several}`;
}

/** A link to a part of this page: link('pages', name). */
function hashOf(...parts) {
    return `#${parts.map(encodeURIComponent).join('/')}`;
}

/** How many columns a text takes, of which a Chinese character takes two. */
function columnsOf(text) {
    let columns = 0;
    for (const character of text)
        columns += character.codePointAt(0) > 0x2e7f ? 2 : 1;
    return columns;
}

/** The text, or its beginning and "…" when it takes more columns. */
function shortened(text, columns) {
    const whole = visible(text);
    if (columnsOf(whole) <= columns)
        return whole;
    let short = '';
    for (const character of whole) {
        if (columnsOf(short + character) >= columns)
            break;
        short += character;
    }
    return `${short}\u2026`;
}
