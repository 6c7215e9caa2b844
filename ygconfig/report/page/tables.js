// SPDX-License-Identifier: MIT
// Settings, web pages and request URLs, and long tables.

const rowsAtOnce = 400;

/**
 * A table whose rows are drawn in pieces. A row is {id, text, cells}: `text` is what a filter looks
 * in, `cells` makes the cells, of which the first heads the row.
 */
function longTable(caption, heads, rows, attributes = {class: 'long'}) {
    let shown = rows;
    let limit = rowsAtOnce;
    const body = h('tbody');
    const more = h('p', {class: 'more'});
    const draw = () => {
        body.replaceChildren(...shown.slice(0, limit).map(({id, cells}) => {
            const [first, ...others] = cells();
            return h('tr', {id, tabindex: -1}, h('th', {scope: 'row'}, first),
                others.map((cell) => h('td', null, cell)));
        }));
        const left = shown.length - limit;
        more.replaceChildren(...left > 0 ? [h('button', {type: 'button', onclick: () => {
            limit += 10 * rowsAtOnce;
            draw();
        }}, `Show more of the other ${left}`)] : []);
        more.hidden = left <= 0;
    };
    draw();
    const node = h('div', attributes,
        h('div', {class: 'scrolls', tabindex: 0, role: 'region', 'aria-label': caption},
            h('table', null, h('caption', null, caption),
                h('thead', null, h('tr', null, heads.map((head) =>
                    h('th', {scope: 'col'}, head)))), body)), more);
    return {
        node,
        filter: (query) => {
            const words = query.toLocaleLowerCase().split(/\s+/).filter(Boolean);
            shown = rows.filter(({text}) => {
                const folded = text.toLocaleLowerCase();
                return words.every((word) => folded.includes(word));
            });
            draw();
            node.hidden = shown.length === 0;
            return shown.length;
        },
        /** Draws the row if this table has it. */
        reveal: (id) => {
            const at = shown.findIndex((row) => row.id === id);
            if (at >= limit) {
                limit = at + rowsAtOnce;
                draw();
            }
        },
    };
}

/** A box that filters some tables, and says how many rows are left. */
function filterBox(view, tables) {
    const state = choices(view);
    const says = h('span', {class: 'quiet', role: 'status'});
    const input = h('input', {type: 'search', id: `${view}-filter`, autocomplete: 'off',
        spellcheck: 'false', value: state.filter ?? '', oninput: () => apply()});
    const apply = () => {
        state.filter = input.value;
        const count = tables.reduce((sum, each) => sum + each.filter(input.value), 0);
        says.textContent = input.value.trim() === '' ? '' : counted(count, 'row');
    };
    if (state.filter)
        apply();
    return {
        node: h('p', {class: 'filter'}, h('label', {class: 'choice'},
            h('span', null, 'Only rows with'), input), ' ', says),
        clear: () => {
            if (input.value !== '') {
                input.value = '';
                apply();
            }
        },
    };
}

/** Goes to a row, wherever it stands. */
function goToRow(id, tables, box) {
    if (!document.getElementById(id))
        box?.clear();
    for (const each of tables)
        each.reveal(id);
    const row = document.getElementById(id);
    row?.scrollIntoView({block: 'center'});
    row?.focus({preventScroll: true});
}

// ---- Files of the storage ----

/** The files of one name: {name, shipped, users}, where the user's own counts if there is one. */
function storedFiles(files) {
    const named = new Map();
    for (const file of files ?? []) {
        if (!named.has(file.name))
            named.set(file.name, {name: file.name});
        named.get(file.name)[file.isUsers ? 'users' : 'shipped'] = file;
    }
    return [...named.values()];
}

function rowId(view, ...parts) {
    return `${view}-${parts.map(encodeURIComponent).join('/')}`;
}

/**
 * A view of such files. `entriesOf(file)` answers {path, label, value, description, at, isSkipped}
 * of each entry, where the path names it in hashes.
 */
function addStorageView({name, title, kind, files, entriesOf, heads, hasDescription}) {
    const firsts = (file) => new Map(file ? entriesOf(file).filter((entry) => !entry.isSkipped)
        .map((entry) => [entry.path.join('\u0000'), entry]) : []);
    const counting = ({shipped, users}) => users ?? shipped;
    let shownTables = [];
    let box = null;

    const rowOf = (stored, file, entry, shippedOf, isUnseen) => {
        const shipped = stored.users && shippedOf.get(entry.path.join('\u0000'));
        const isOwn = file.isUsers && !entry.isSkipped &&
            (!shipped || shipped.value !== entry.value);
        return {
            id: entry.isSkipped || isUnseen ? null : rowId(name, stored.name, ...entry.path),
            text: [...entry.path, entry.value, entry.description ?? ''].join(' '),
            cells: () => [
                h('span', {class: 'name'}, entry.label),
                isUnseen ? h('span', {class: 'quiet'}, 'not there')
                    : [valueText(entry.value), isOwn && h('strong', {class: 'own'}, 'user\u2019s own'),
                        entry.isSkipped && h('span', {class: 'own quiet'}, 'skipped')],
                stored.users && !entry.isSkipped && (isUnseen ? valueText(entry.value)
                    : shipped ? (shipped.value === entry.value
                        ? h('span', {class: 'quiet'}, 'the same') : valueText(shipped.value))
                        : h('span', {class: 'quiet'}, 'not there')),
                hasDescription && entry.description,
                [lineLink(entry.at), findingMarks(entry.at)],
            ].filter((cell, column) => (column !== 2 || stored.users) &&
                (column !== 3 || hasDescription)),
        };
    };

    const tableOf = (stored) => {
        const file = counting(stored);
        const shippedOf = firsts(stored.shipped);
        const ownOf = firsts(file);
        const rows = entriesOf(file).map((entry) => rowOf(stored, file, entry, shippedOf, false));
        if (stored.users) {
            for (const [path, entry] of shippedOf) {
                if (!ownOf.has(path))
                    rows.push(rowOf(stored, stored.shipped, entry, shippedOf, true));
            }
        }
        return longTable(`${title} of ${file.file}`, [heads[0], heads[1],
            stored.users && 'As shipped', hasDescription && 'Description', 'Place']
            .filter(Boolean), rows, {class: hasDescription ? 'long described' : 'long'});
    };

    addView({
        name,
        title,
        count: () => storedFiles(files()).reduce((sum, stored) =>
            sum + firsts(counting(stored)).size, 0),
        names: () => storedFiles(files()).flatMap((stored) =>
            [...firsts(counting(stored)).values()].map((entry) => ({kind, name: entry.label,
                hash: hashOf(name, stored.name, ...entry.path), at: entry.at}))),
        draw: () => {
            const stored = storedFiles(files());
            shownTables = stored.map(tableOf);
            box = filterBox(name, shownTables);
            if (stored.length === 0)
                return [h('p', null, 'The root has none.')];
            return [box.node, stored.map((each, index) => [
                h('h3', null, each.name),
                h('p', null, whoCounts(each)),
                !counting(each).isRead && h('p', null,
                    h('strong', null, 'The file cannot be read, so nothing of it counts.')),
                counting(each).md5 && h('p', {class: 'quiet'}, 'Digest ',
                    h('code', null, counting(each).md5)),
                shownTables[index].node,
            ])];
        },
        show: (section, parts) => {
            if (parts.length > 1)
                goToRow(rowId(name, ...parts), shownTables, box);
        },
    });
}

function whoCounts({shipped, users}) {
    if (!users)
        return ['Shipped: ', h('code', null, shipped.file), '.'];
    return [h('strong', null, 'The user\u2019s own: '), h('code', null, users.file),
        shipped ? [' counts instead of the shipped ', h('code', null, shipped.file), '.']
            : '; there is no shipped one.'];
}

function valueText(value) {
    if (value === null || value === undefined)
        return h('span', {class: 'quiet'}, 'no address');
    return value === '' ? h('span', {class: 'quiet'}, 'empty') : h('code', {class: 'name'}, value);
}

addStorageView({
    name: 'settings',
    title: 'Settings',
    kind: 'setting',
    files: () => model.settings,
    heads: ['Item', 'Value'],
    hasDescription: true,
    entriesOf: (file) => file.sections.flatMap((section) => section.items.map((item) => ({
        path: [section.name, item.name], label: `${section.name}/${item.name}`, value: item.text,
        description: item.description, at: item.at, isSkipped: item.isSkipped}))),
});

addStorageView({
    name: 'web-pages',
    title: 'Web pages',
    kind: 'web page',
    files: () => model.webPages,
    heads: ['Key', 'Address'],
    entriesOf: (file) => file.pages.map(({key, url, at, isSkipped}) => ({path: [key ?? ''],
        label: key ?? '(no key)', value: url, at, isSkipped})),
});

addStorageView({
    name: 'request-urls',
    title: 'Request URLs',
    kind: 'request URL',
    files: () => model.requestUrls,
    heads: ['Key', 'Address'],
    entriesOf: (file) => file.urls.map(({key, url, at, isSkipped}) => ({path: [key ?? ''],
        label: key ?? '(no key)', value: url, at, isSkipped})),
});
