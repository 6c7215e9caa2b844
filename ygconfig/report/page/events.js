// SPDX-License-Identifier: MIT
// Groups, templates and commands of events, and the way from an element to a page.

// How many groups are drawn when all of them are.
const mostOnPaper = 200;

const eventSubjects = {
    group: {title: 'Group', several: 'Groups', listed: () => model.events.groups},
    template: {title: 'Template', several: 'Templates', listed: () => model.events.templates},
    command: {title: 'Command', several: 'Commands', listed: () => model.events.commands},
    page: {title: 'Page', several: 'Pages', listed: () => pagesOfEvents()},
};

addView({
    name: 'events',
    title: 'Events',
    count: () => model.events.groups.length,
    names: () => ['group', 'template', 'command'].flatMap((kind) =>
        eventSubjects[kind].listed().map((subject) => ({kind: kindInSearch(kind),
            name: nameOfSubject(subject), hash: hashOf('events', kind, nameOfSubject(subject)),
            at: subject.at}))),
    draw: () => [
        h('p', {class: 'quiet'}, 'An element takes part in a group of events. An event triggers ' +
            'a command, and the command, or the event itself, changes to a page.'),
        h('div', {class: 'beside'},
            h('div', {class: 'subjects'}, Object.entries(eventSubjects).map(([kind, {several,
                listed}]) => subjectList(kind, several, listed()))),
            h('div', {id: 'event-subject'})),
    ],
    show: showSubject,
    print: () => [
        model.events.groups.slice(0, mostOnPaper).map((group) => [
            h('h3', null, `Group ${visible(group.name)}`), ...subjectContent('group', group.name)]),
        model.events.groups.length > mostOnPaper && h('p', {class: 'quiet'},
            `${model.events.groups.length - mostOnPaper} further groups are not printed.`),
    ],
});

function kindInSearch(kind) {
    return kind === 'command' ? 'command' : `event ${kind}`;
}

/** A command is a record, which has its name in a field. */
function nameOfSubject(subject) {
    return subject.name ?? subject.commandName ?? '';
}

/** The pages that events or commands change to, in the order of the file. */
function pagesOfEvents() {
    return once('pages of events', () => [...new Set(rowsOfEvents().map(({record}) =>
        pageOfEvent(record)))].filter((name) => name !== undefined).map((name) => ({name})));
}

function subjectList(kind, title, subjects) {
    return h('details', {open: kind === 'group'},
        h('summary', null, `${title} `, h('span', {class: 'count'}, subjects.length)),
        h('ul', {class: 'names'}, subjects.map((subject) => h('li', null,
            h('a', {href: hashOf('events', kind, nameOfSubject(subject)), class: 'name'},
                nameOfSubject(subject) || '""'), findingMarks(subject.at)))));
}

function showSubject(section, [kind = 'group', name]) {
    const subject = eventSubjects[kind] ? kind : 'group';
    const listed = eventSubjects[subject].listed();
    const shownName = name ?? (listed[0] && nameOfSubject(listed[0]));
    const box = section.querySelector('#event-subject');
    if (shownName === undefined) {
        box.replaceChildren(h('p', null, 'The event file has no group.'));
        return;
    }
    box.replaceChildren(...[
        h('h3', {tabindex: -1}, `${eventSubjects[subject].title} `,
            h('span', {class: 'name'}, shownName)),
        ...subjectContent(subject, shownName)].flat(Infinity).filter(Boolean));
    for (const link of section.querySelectorAll('.names a')) {
        if (link.getAttribute('href') === hashOf('events', subject, shownName)) {
            link.setAttribute('aria-current', 'true');
            link.closest('details').open = true;
        } else {
            link.removeAttribute('aria-current');
        }
    }
}

/** Every event of every group, and of templates that no group includes. */
function rowsOfEvents() {
    return once('rows of events', () => {
        const {groups, templates, records} = model.events;
        const rowsOf = (kind) => (section) => section.events.map((index) =>
            ({kind, section, index, record: records[index]}));
        const rows = groups.flatMap(rowsOf('group'));
        const inGroups = new Set(rows.map((row) => row.index));
        return rows.concat(templates.flatMap(rowsOf('template')).filter((row) =>
            !inGroups.has(row.index)));
    });
}

function commandNamed(name) {
    return byName('commands', () => model.events.commands, (command) => command.commandName)
        .get(name);
}

/** The event's own page, or that of its command. */
function pageOfEvent(record) {
    return record.changeStyleName ?? commandNamed(record.command)?.changeStyleName;
}

/** The template that an event was written in: the first one that has it. */
function homeOfEvent(index) {
    return once('homes of events', () => new Map([...model.events.templates].reverse().flatMap(
        (template) => template.events.map((each) => [each, template])))).get(index);
}

function elementsOfGroup(name) {
    return (model.layout?.elements ?? []).filter((element) => element.elementEvent === name);
}

function subjectContent(kind, name) {
    const rows = rowsOfSubject(kind, name);
    const found = eventSubjects[kind].listed().find((subject) => nameOfSubject(subject) === name);
    const isKnown = found || kind === 'page';
    return [
        h('p', null, placeLink(found?.at), ' ', findingMarks(found?.at)),
        !isKnown && h('p', null, `The event file has no ${kind} of this name.`),
        kind === 'page' && h('p', null, pageLink(name, 'See the page')),
        kind === 'command' && commandFacts(found),
        isKnown && eventFlow(kind, name, rows),
        isKnown && rows.length > 0 && eventTable(kind, name, rows),
    ];
}

function commandFacts(command) {
    if (!command)
        return null;
    const panels = (model.layout?.panels ?? []).filter((panel) =>
        panel.excuteCommandInfo === command.commandName);
    return h('dl', {class: 'facts'}, [
        ['Changes to', command.changeStyleName !== undefined && pageLink(command.changeStyleName)],
        ['Dispatches', command.dispatchParam], ['Data', command.addtionData],
        ['Panels that name it', panels.length > 0 && panels.map((panel) =>
            [h('span', {class: 'name'}, panel.panelName ?? 'a panel without a name'), ' ',
                placeLink(panel.at), ' '])],
    ].filter(([, value]) => value !== undefined && value !== false).map(([term, value]) =>
        [h('dt', null, term), h('dd', null, value)]));
}

function rowsOfSubject(kind, name) {
    if (kind === 'template') {
        const template = model.events.templates.find((each) => each.name === name);
        const isIn = new Set(template?.events);
        return rowsOfEvents().filter((row) => isIn.has(row.index));
    }
    return rowsOfEvents().filter(({kind: inKind, section, record}) =>
        kind === 'group' ? inKind === 'group' && section.name === name
            : kind === 'command' ? record.command === name
                : pageOfEvent(record) === name);
}

/** A link to a page of the layout, or to the template that builds it. */
function pageLink(name, text = name) {
    const pages = byName('pages', () => model.layout?.pages ?? [], (page) => page.name);
    if (pages.has(name))
        return h('a', {href: hashOf('pages', name), class: 'name'}, text);
    const template = model.layout?.templates?.find((each) => name.startsWith(`${each.name}-`));
    return template ? h('a', {href: hashOf('templates', name), class: 'name'}, text)
        : h('span', null, h('span', {class: 'name'}, name), ' ',
            h('span', {class: 'quiet'}, '(no such page is stored)'));
}

const mostRows = 400;

function eventTable(kind, name, rows) {
    const columns = [
        ['Event', ({record}) => h('span', {class: 'name'}, record.eventName ?? '')],
        kind !== 'group' && ['In', ({kind: inKind, section}) => eventLink(inKind, section.name)],
        kind !== 'command' && ['Command', ({record}) => record.command !== undefined &&
            [eventLink('command', record.command),
                !commandNamed(record.command) && ' (no such command)']],
        kind !== 'page' && ['Page', ({record}) => pageOfEvent(record) !== undefined &&
            pageLink(pageOfEvent(record))],
        ['Dispatches', ({record}) => record.dispatchParam],
        ['Data', ({record}) => record.addtionData],
        kind !== 'template' && ['From template', ({index}) => homeOfEvent(index) &&
            eventLink('template', homeOfEvent(index).name)],
        ['Place', ({record}) => [placeLink(record.at), findingMarks(record.at)]],
    ].filter(Boolean);
    return [
        table(`Events of ${kind} ${visible(name)}`, columns.map(([head]) => head),
            rows.slice(0, mostRows).map((row) => columns.map(([, cell]) => cell(row)))),
        rows.length > mostRows && h('p', {class: 'quiet'},
            `${rows.length - mostRows} further events are not listed.`),
    ];
}

function eventLink(kind, name) {
    return h('a', {href: hashOf('events', kind, name), class: 'name'}, name);
}

// ---- The drawing ----

const flowWidth = 164;
const flowHeight = 30;
const flowGap = {across: 34, down: 10};
const mostInColumn = 80;

/** Columns of things, each linked to those that it leads to. */
class Flow {
    columns = [];
    edges = new Set();

    constructor(titles) {
        this.titles = titles;
        this.columns = titles.map(() => new Map());
    }

    add(column, key, node) {
        if (!this.columns[column].has(key))
            this.columns[column].set(key, {...node, key});
        return `${column}:${key}`;
    }

    connect(from, to) {
        this.edges.add(JSON.stringify([from, to]));
    }

    draw(label) {
        const places = new Map();
        const shownColumns = this.columns.map((nodes) => [...nodes.values()].slice(0, mostInColumn));
        const left = this.columns.reduce((sum, nodes) =>
            sum + Math.max(0, nodes.size - mostInColumn), 0);
        const rows = Math.max(1, ...shownColumns.map((nodes) => nodes.length));
        const height = 26 + rows * (flowHeight + flowGap.down);
        const width = this.columns.length * (flowWidth + flowGap.across) - flowGap.across + 2;
        const boxes = shownColumns.map((nodes, column) => {
            const x = 1 + column * (flowWidth + flowGap.across);
            const skip = (rows - nodes.length) * (flowHeight + flowGap.down) / 2;
            return nodes.map((node, row) => {
                const y = 26 + Math.max(0, skip) + row * (flowHeight + flowGap.down);
                places.set(`${column}:${node.key}`, [x, y]);
                return flowBox(node, x, y);
            });
        });
        const lines = [...this.edges].map((edge) => JSON.parse(edge).map((id) => places.get(id)))
            .filter(([from, to]) => from && to).map(([[x1, y1], [x2, y2]]) => {
                const from = [x1 + flowWidth, y1 + flowHeight / 2];
                const to = [x2, y2 + flowHeight / 2];
                const middle = (from[0] + to[0]) / 2;
                return svg('path', {class: 'edge',
                    d: `M${from} C${middle},${from[1]} ${middle},${to[1]} ${to}`});
            });
        return [h('div', {class: 'scrolls', role: 'region', tabindex: 0, 'aria-label': label},
            svg('svg', {class: 'flow', width, height, viewBox: `0 0 ${width} ${height}`,
                role: 'group', 'aria-label': label},
            this.titles.map((title, column) => svg('text', {class: 'head', y: 14,
                x: 1 + column * (flowWidth + flowGap.across)}, title)), lines, boxes)),
        left > 0 && h('p', {class: 'quiet'}, `${left} further things are not drawn.`)];
    }
}

function flowBox({text, hash, note, missing}, x, y) {
    const shown = shortened(text || '""', 20);
    const left = 20 - columnsOf(shown);
    const content = [
        svg('rect', {x, y, width: flowWidth, height: flowHeight, rx: 6}),
        svg('text', {x: x + 8, y: y + 20}, shown),
        note && left > 4 && svg('text', {class: 'note', x: x + flowWidth - 8, y: y + 20,
            'text-anchor': 'end'}, shortened(note, left)),
        svg('title', null, note ? `${text}: ${note}` : text),
    ];
    const attributes = {class: missing ? 'box missing' : 'box'};
    return hash ? svg('a', {...attributes, href: hash}, content) : svg('g', attributes, content);
}


function eventFlow(kind, name, rows) {
    const isGroup = kind === 'group';
    const flow = new Flow([isGroup ? 'Elements' : 'Groups', 'Events', 'Commands', 'Pages']);
    const first = isGroup && elementsOfGroup(name).map((element) => flow.add(0,
        `${element.elementName} ${element.uuid ?? element.at}`, {text: element.elementName,
            note: element.uuid, hash: element.at && hashOf('source',
                `${model.sources[element.at[0]].name}:${element.at[1]}`)}));
    for (const {kind: inKind, section, index, record} of rows) {
        const home = homeOfEvent(index);
        const event = flow.add(1, isGroup ? index : `${record.eventName} ${index}`, {
            text: record.eventName, note: home?.name,
            hash: home && hashOf('events', 'template', home.name)});
        if (isGroup)
            first.forEach((element) => flow.connect(element, event));
        else
            flow.connect(flow.add(0, `${inKind} ${section.name}`, {text: section.name,
                note: inKind === 'template' ? 'template' : undefined,
                hash: hashOf('events', inKind, section.name)}), event);
        const page = pageOfEvent(record);
        const target = page !== undefined && flow.add(3, page, {text: page,
            hash: hashOf('events', 'page', page)});
        if (record.command !== undefined) {
            const isKnown = commandNamed(record.command);
            const command = flow.add(2, record.command, {text: record.command,
                note: isKnown ? undefined : 'missing', missing: !isKnown,
                hash: hashOf('events', 'command', record.command)});
            flow.connect(event, command);
            if (target && record.changeStyleName === undefined)
                flow.connect(command, target);
        }
        if (target && record.changeStyleName !== undefined)
            flow.connect(event, target);
    }
    return flow.draw(`From ${isGroup ? 'elements' : 'groups'} to pages`);
}
