// SPDX-License-Identifier: MIT
// Custom pages: what a template can be made into. The pages themselves are built by the library;
// the model has one of each template, and what each argument of each slot changes in it.

addView({
    name: 'templates',
    title: 'Custom pages',
    count: () => model.layout.templates.length,
    names: () => model.layout.templates.map(({name, at}) => ({kind: 'template', name, at,
        hash: hashOf('templates', name)})),
    draw: () => {
        redrawInTheme('templates');
        return model.layout.templates.length === 0
            ? [h('p', null, 'The files have no page with slots that a custom page could be made ' +
                'of.')] : [
                h('p', {class: 'quiet'}, 'The name of a custom page is that of its template and ' +
                    'one argument for each slot, with "-" between them. No file has such a page.'),
                h('div', {class: 'beside'},
                    h('div', {class: 'subjects', id: 'template-list'}, h('ul', {class: 'names'},
                        model.layout.templates.map(listedTemplate))),
                    h('div', {id: 'template-content'})),
            ];
    },
    show: (section, [name]) => {
        if (model.layout.templates.length > 0)
            showTemplate(section, name);
    },
    print: () => templatesOnPaper(),
});

function listedTemplate({name, slots}) {
    return h('li', null, h('a', {href: hashOf('templates', name)},
        h('span', {class: 'name'}, name === '' ? '(empty name)' : name), ' ',
        h('span', {class: 'quiet'}, counted(slots.length, 'slot'))));
}

/** The template of a name, or of a whole custom page's, with the arguments that this gives. */
function templateNamed(name) {
    const [front, ...given] = name.split('-');
    return {template: model.layout.templates.find((each) => each.name === front), given};
}

function showTemplate(section, name) {
    const {template, given} = name === undefined ? {template: model.layout.templates.find((each) =>
        each.name === choices('templates').last) ?? model.layout.templates[0], given: []}
        : templateNamed(name);
    const box = section.querySelector('#template-content');
    for (const link of section.querySelectorAll('#template-list a')) {
        if (template && link.hash === hashOf('templates', template.name))
            link.setAttribute('aria-current', 'page');
        else
            link.removeAttribute('aria-current');
    }
    if (!template) {
        box.replaceChildren(h('p', null, `There is no template ${JSON.stringify(visible(name))}.`));
        return;
    }
    choices('templates').last = template.name;
    if (given.length === template.slots.length)
        template.slots.forEach((slot, at) => chooseArgument(template, at, given[at]));
    drawTemplate(box, template);
}

/** What is chosen for each slot: an index in its variants. */
function chosenVariants({name, slots}) {
    const own = choices('templates').arguments?.[name] ?? [];
    return slots.map(({variants}, at) =>
        Math.max(0, variants.findIndex(({argument}) => argument === own[at])));
}

function chooseArgument(template, slot, argument) {
    const all = choices('templates').arguments ??= Object.create(null);
    (all[template.name] ??= template.slots.map(({variants}) => variants[0].argument))[slot] =
        argument;
}

function customName(template, variants) {
    return [template.name, ...template.slots.map((slot, at) =>
        slot.variants[variants[at]].argument)].join('-');
}

/**
 * What is drawn for the chosen variants: {panels, shown}, the panels of the page and what stands in
 * its slots, or {why}, a sentence.
 */
function composed(template, variants) {
    if (!template.panels)
        return {why: 'The library does not build pages of this template, or the report has no ' +
            'room for one.'};
    const changed = variants.filter((variant) => variant > 0).length;
    if (!template.isApart && changed > 1)
        return {why: 'In this template the slots change the same panels, so the report has only ' +
            'the pages in which one slot differs from the first of its list.'};
    let {panels} = template;
    const shown = new Map();
    template.slots.forEach(({group, way, variants: all}, at) => {
        const variant = all[variants[at]];
        if (way?.length === 0 && variants[at] > 0)
            panels = variant.panels;
        else if (way?.length > 0 && (template.isApart || changed === 0 || variants[at] > 0))
            shown.set(way.join('.'), {isSlot: true, group, member: variant.argument,
                panel: variant.panel});
    });
    return {panels, shown};
}

function drawTemplate(box, template) {
    const variants = chosenVariants(template);
    const name = customName(template, variants);
    const command = `ygconfig show style ${quotedForShell(name)}`;
    const stored = model.layout.pages.find((page) => page.source === 'style' &&
        page.name === name);
    const drawn = stored ? {panels: stored.panels, shown: new Map()} : composed(template, variants);
    const redraw = (id) => {
        drawTemplate(box, template);
        document.getElementById(id)?.focus();
    };
    const head = [
        h('h3', null, h('span', {class: 'quiet'}, 'Template'), ' ',
            h('span', {class: 'name'}, template.name)),
        h('p', null, placeLink(template.at), findingMarks(template.at), ' ',
            pagesText(template.pages), template.pages > 0 && ' can be built of it'),
        h('div', {class: 'controls drawn-controls'}, template.slots.map((slot, at) =>
            argumentChoice(template, slot, at, variants[at], redraw))),
        nameToCopy(name),
        leftOut(template, command),
        stored && h('p', {class: 'said'}, 'A stored page has this name, so the application shows ' +
            'that one: ', h('a', {href: hashOf('pages', name)}, name), '.'),
        drawn.why && h('p', {class: 'said'}, drawn.why, ' ', h('code', null, command),
            ' draws this page.'),
    ];
    let drawing;
    if (!drawn.why) {
        drawing = drawnPage({key: JSON.stringify(['template', template.name]),
            prefix: 'templates', label: name, panels: drawn.panels,
            focus: stored?.focus ?? template.focus, shown: () => drawn.shown, before: () => []});
    }
    box.replaceChildren(...[head, drawing?.nodes ?? []].flat(Infinity).filter(Boolean));
    drawnPages.set('templates', drawing);
    drawing?.redraw('picture');
}

/** JSON has no whole number that is larger than all that JavaScript counts. */
function pagesText(pages) {
    return pages > Number.MAX_SAFE_INTEGER ? 'More than 9,000,000,000,000,000 pages'
        : counted(pages, 'page');
}

function argumentChoice(template, slot, at, chosenVariant, redraw) {
    const id = `templates-slot-${at}`;
    const title = `Slot ${at + 1}, ${visible(slot.group ?? '(no group)')}`;
    if (slot.isOpen)
        return h('p', {class: 'choice'}, h('span', null, title), ' ', h('span', {class: 'quiet'},
            'has nothing to choose and stays open'));
    const group = (label, wanted) => {
        const options = slot.variants.map((variant, index) => ({...variant, index}))
            .filter(({isMember}) => isMember === wanted);
        return options.length > 0 && h('optgroup', {label}, options.map(({argument, index}) =>
            h('option', {value: index, selected: index === chosenVariant}, argument)));
    };
    const list = h('select', {id, onchange: () => {
        chooseArgument(template, at, slot.variants[Number(list.value)].argument);
        redraw(id);
    }}, group('Members', true), group('Values of wildcard lists', false));
    return h('label', {class: 'choice'}, h('span', null, title), list);
}

function nameToCopy(name) {
    const text = h('code', {id: 'custom-name', class: 'name'}, name);
    const said = h('span', {role: 'status', class: 'quiet'});
    const select = () => {
        const range = document.createRange();
        range.selectNodeContents(text);
        getSelection().removeAllRanges();
        getSelection().addRange(range);
    };
    const copy = async () => {
        try {
            await navigator.clipboard.writeText(name);
            said.textContent = 'Copied.';
        } catch {
            select();
            said.textContent = 'Selected; copy it with the keyboard.';
        }
    };
    return h('p', {class: 'custom-name'}, 'Name ', text, ' ', h('button', {type: 'button',
        id: 'copy-name', onclick: copy}, 'Copy'), ' ', said);
}

function leftOut({slots}, command) {
    const left = slots.map(({group, left: count}) => ({group, count}))
        .filter(({count}) => count > 0);
    return left.length > 0 && h('p', {class: 'said'}, 'The report has no room for all: ',
        left.map(({group, count}, at) => [at > 0 && ', ',
            `${counted(count, 'argument')} of group ${visible(group ?? '')}`]),
        ' cannot be chosen here. ', h('code', null, command), ' draws one page of any name.');
}

function quotedForShell(name) {
    return /^[\p{L}\p{N}._-]+$/u.test(name) && !name.startsWith('-') ? name
        : `'${visible(name).replaceAll("'", "'\\''")}'`;
}

function templatesOnPaper() {
    return onPaper(model.layout.templates, 'templates', (template) => {
        const variants = chosenVariants(template);
        return {...composed(template, variants), label: customName(template, variants),
            at: template.at, focus: template.focus,
            said: template.slots.map(({group, variants: all, left}) => h('p', null,
                `${visible(group ?? '(no group)')}: `, all.map(({argument}) => argument).join(', '),
                left > 0 && ` and ${left} more`))};
    });
}
