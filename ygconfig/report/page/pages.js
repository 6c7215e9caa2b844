// SPDX-License-Identifier: MIT
// The pages of the files, and the panels that they share, one drawn at a time.

const mostListed = 1000;
// Of the drawings on paper together, so that a browser can print them.
const mostBoxesOnPaper = 6000;

/**
 * What can be drawn, in lists: {title, items}, an item {name, source, at, panels, focus, member}.
 */
function drawnSubjects() {
    return once('drawn subjects', () => {
        const {pages, groups, reuse} = model.layout;
        const panelItem = (source) => ({name, at, panel}) => ({name, source, at, panels: [panel]});
        return [
            {title: 'Pages', items: pages.filter(({source}) => source === 'style')},
            {title: 'Tab pages', items: pages.filter(({source}) => source === 'tab')},
            ...groups.map((group) => ({title: `Group ${visible(group.name)}`, at: group.at,
                items: group.members.map((member) => ({name: group.name, source: 'group',
                    member: member.name, at: member.at, panels: [member.panel]}))})),
            {title: 'Reuse panels', items: reuse.map(panelItem('reuse'))},
        ];
    });
}

function addressOf({source, name, member}) {
    return pageAddress(source, name, member);
}

function subjectName({name, member}) {
    return member ?? name;
}

addView({
    name: 'pages',
    title: 'Pages',
    count: () => model.layout.pages.length,
    names: () => once('names of pages', namesOfPages),
    draw: () => {
        redrawInTheme('pages');
        return [h('div', {class: 'beside'},
            h('div', {class: 'subjects', id: 'page-list'}, pageLists()),
            h('div', {id: 'page-content'}))];
    },
    show: (section, parts) => showPage(section, parts),
    print: () => pagesOnPaper(),
});

function pageLists() {
    const lists = h('div');
    const filter = h('input', {type: 'search', id: 'pages-filter', autocomplete: 'off',
        placeholder: 'Filter', 'aria-label': 'Filter pages and panels',
        value: choices('pages').filter ?? '', oninput: () => {
            choices('pages').filter = filter.value;
            update();
        }});
    const update = () => {
        const words = filter.value.toLocaleLowerCase().split(/\s+/).filter(Boolean);
        let room = mostListed;
        lists.replaceChildren(...drawnSubjects().flatMap(({title, items}) => {
            const found = items.filter((item) => words.every((word) =>
                `${subjectName(item)} ${title}`.toLocaleLowerCase().includes(word)));
            const listed = found.slice(0, room);
            room -= listed.length;
            return found.length === 0 ? [] : [h('h3', null, title), h('ul', {class: 'names'},
                listed.map(listedPage)), listed.length < found.length && h('p', {class: 'quiet'},
                `${found.length - listed.length} more; the filter finds them.`)];
        }).filter(Boolean));
        markListed();
    };
    const markListed = () => {
        for (const link of lists.querySelectorAll('a[data-key]')) {
            if (link.dataset.key === choices('pages').key)
                link.setAttribute('aria-current', 'page');
            else
                link.removeAttribute('aria-current');
        }
    };
    update();
    lists.addEventListener('mark', markListed);
    lists.id = 'page-links';
    return [filter, lists];
}

function listedPage(item) {
    const {hash, key} = addressOf(item);
    const isDefault = item.source === 'style' && item.name === model.layout.defaultPage;
    return h('li', null, h('a', {href: hash, 'data-key': key}, h('span', {class: 'name'},
        subjectName(item) === '' ? '(empty name)' : subjectName(item)),
    isDefault && h('span', {class: 'quiet'}, ' default')));
}

function subjectNamed([name, source = 'style', member]) {
    const items = drawnSubjects().flatMap((list) => list.items);
    return items.find((item) => item.name === name && item.source === source &&
        (source !== 'group' || item.member === member));
}

function firstSubject() {
    const {pages, defaultPage} = model.layout;
    return pages.find(({name, source}) => source === 'style' && name === defaultPage) ??
        drawnSubjects().flatMap((list) => list.items)[0];
}

/** The parts are [NAME], [NAME, "tab" or "reuse"], [GROUP, "group", MEMBER], then what is chosen. */
function showPage(section, parts) {
    const subject = parts.length === 0 ? subjectNamed(choices('pages').last ?? []) ?? firstSubject()
        : subjectNamed(parts);
    const box = section.querySelector('#page-content');
    if (!subject) {
        box.replaceChildren(h('p', null, parts.length === 0 ? 'The files have no pages.'
            : `There is nothing of the name ${JSON.stringify(visible(parts[0]))} here.`));
        return;
    }
    const {key} = addressOf(subject);
    choices('pages').key = key;
    choices('pages').last = [subject.name, subject.source, subject.member];
    const drawing = drawnPage(pageToDraw(subject, 'pages'));
    box.replaceChildren(...pageHead(subject), ...drawing.nodes);
    drawing.redraw('picture');
    drawnPages.set('pages', drawing);
    section.querySelector('#page-links').dispatchEvent(new Event('mark'));
    const wanted = parts[subject.source === 'group' ? 3 : 2];
    const [, kind, name] = /^(panel|element|slot):(.*)$/s.exec(wanted ?? '') ?? [];
    if (kind)
        drawing.chooseWhere((each) => isNamed(each, kind, name));
}

function isNamed(box, kind, name) {
    return kind === 'element' ? box.kind === 'element' &&
        (box.record.elementUuid === name || box.record.elementName === name)
        : box.panel !== undefined && box.record.panelName === name;
}

/** The drawings on the screen by their view, to be drawn again in another theme. */
const drawnPages = new Map();

function redrawInTheme(view) {
    themeListeners.add(() => drawnPages.get(view)?.redraw('picture'));
}

function pageHead(subject) {
    const {source, name, member, layer, focus} = subject;
    const kinds = {style: 'Page', tab: 'Tab page', group: `Member of group ${visible(name)}`,
        reuse: 'Reuse panel'};
    return [
        h('h3', null, h('span', {class: 'quiet'}, kinds[source]), ' ',
            h('span', {class: 'name'}, member ?? name)),
        h('p', null, placeLink(subject.at), findingMarks(subject.at),
            layer !== undefined && ` layer ${layer}`,
            focus !== undefined && [', focus ', h('span', {class: 'name'}, focus)],
            source === 'style' && name === model.layout.defaultPage && ', the default page'),
        (source === 'group' || source === 'reuse') && sharedBy(subject),
    ].filter(Boolean);
}

function sharedBy({panels: [panel], source, name}) {
    const pages = pagesOfPanel(panel);
    const slots = source === 'group' ? ' It stands where a slot of the group shows it.' : '';
    return h('p', {class: 'quiet'}, pages.length === 0
        ? `No page of the files shows it.${slots}` : [`Shown in ${counted(pages.length, 'page')}: `,
            pages.slice(0, mostOfElsewhere).map((page, at) => [at > 0 && ', ',
                h('a', {href: page.hash}, page.name)]),
            pages.length > mostOfElsewhere && ` and ${pages.length - mostOfElsewhere} more`]);
}

/** The slots that the reader has given another member, by their path. */
function shownMembers(key) {
    const shown = new Map();
    for (const [path, {group, member}] of Object.entries(choices('pages').slots?.[key] ?? {})) {
        const panel = model.layout.groups.find(({name}) => name === group)?.members
            .find(({name}) => name === member)?.panel;
        if (panel !== undefined)
            shown.set(path, {group, member, panel});
    }
    return shown;
}

function pageToDraw(subject, prefix) {
    const {key} = addressOf(subject);
    return {
        key, prefix, label: `${subject.member ?? subject.name}`, panels: subject.panels,
        focus: subject.focus, shown: () => shownMembers(key),
        before: (laidOut, redraw) => slotControls(laidOut, key, prefix, redraw),
    };
}

function slotControls(laidOut, key, prefix, redraw) {
    const controls = [];
    eachBox(laidOut, (box) => {
        const group = box.slot && model.layout.groups.find(({name}) => name === box.slot.group);
        if (!group)
            return;
        const own = box.slot.member === undefined ? [{value: '', text: 'main file\u2019s member'}]
            : [];
        const list = choice(`Slot ${visible(group.name)}`, [...own, ...group.members.map(({name}) =>
            ({value: `=${name}`, text: name}))], box.slot.member === undefined ? ''
            : `=${box.slot.member}`, (value) => {
            const slots = (choices('pages').slots ??= {})[key] ??= {};
            if (value === '')
                delete slots[box.path];
            else
                slots[box.path] = {group: group.name, member: value.slice(1)};
            redraw();
            document.getElementById(`${prefix}-slot-${box.path}`)?.focus();
        });
        list.querySelector('select').id = `${prefix}-slot-${box.path}`;
        controls.push(list);
    });
    return controls;
}

/** All names, each with the first page that has it. */
function namesOfPages() {
    const names = [];
    const met = {panel: new Set(), element: new Set()};
    for (const {title, items} of drawnSubjects()) {
        for (const item of items) {
            const {hash} = addressOf(item);
            names.push({kind: {style: 'page', tab: 'tab page', reuse: 'reuse panel',
                group: `magic panel of ${item.name}`}[item.source], name: subjectName(item), hash,
            at: item.at});
            names.push(...namesInPanels(item, met));
        }
    }
    names.push(...model.layout.groups.map(({name, at, members}) => ({kind: 'group of magic panels',
        name, at, hash: hashOf('pages', name, 'group', members[0]?.name ?? '')})));
    return names;
}

function namesInPanels(item, met) {
    const names = [];
    const parts = {style: [item.name, 'style'], group: [item.name, 'group', item.member]};
    const add = (kind, name, at) => names.push({kind, name, at,
        hash: hashOf('pages', ...(parts[item.source] ?? [item.name, item.source]),
            `${kind}:${name}`)});
    const pending = [...item.panels];
    while (pending.length > 0) {
        const number = pending.pop();
        if (met.panel.has(number))
            continue;
        met.panel.add(number);
        const {panelName, at, panels = [], elements = []} = model.layout.panels[number];
        if (panelName)
            add('panel', panelName, at);
        pending.push(...panels);
        for (const each of elements) {
            if (met.element.has(each))
                continue;
            met.element.add(each);
            const {elementName, elementUuid, at: place} = model.layout.elements[each];
            add('element', elementName, place);
            if (elementUuid)
                add('element', elementUuid, place);
        }
    }
    return names;
}

function pagesOnPaper() {
    return onPaper(model.layout.pages, 'pages', (page) => {
        const shown = shownMembers(addressOf(page).key);
        return {label: page.name, at: page.at, focus: page.focus, panels: page.panels, shown,
            said: page.source === 'tab' && ' (tab page)'};
    });
}

/** Drawings under each other, as many as there is room for. */
function onPaper(items, several, toDraw) {
    let room = mostBoxesOnPaper;
    const figures = [];
    for (const item of items) {
        const {label, at, focus, panels, shown, said, why} = toDraw(item);
        const laidOut = !why && layOut(model.layout, panels, windowSize(), shown);
        room -= laidOut ? laidOut.boxes : 1;
        if (room < 0)
            break;
        figures.push(h('figure', null, h('figcaption', null, h('strong', null, label), ' ',
            placeLink(at), said), why ?? [picture(laidOut, {label, width: paperWidth, focus,
            theme: chosen.theme}), saidOf(laidOut, () => {})]));
    }
    return [figures, figures.length < items.length && h('p', null,
        `The first ${figures.length} of ${items.length} ${several} are on paper.`)];
}
