// SPDX-License-Identifier: MIT
// Search over every name of the root.

const mostResults = 60;

/** The names that hold all words of the query, those that begin with it first. */
function search(query) {
    const words = query.toLocaleLowerCase().split(/\s+/).filter(Boolean);
    if (words.length === 0)
        return [];
    const names = once('names', () => [...views.values()].flatMap((view) =>
        view.names?.() ?? []).map((item) => ({...item,
        text: `${item.name} ${item.kind}`.toLocaleLowerCase()})));
    const rank = (item) => item.text.startsWith(words[0]) ? 0 : 1;
    return names.filter(({text}) => words.every((word) => text.includes(word)))
        .sort((one, other) => rank(one) - rank(other));
}

function searchBox() {
    const results = h('div', {class: 'results', id: 'results', hidden: true, 'aria-live': 'polite'});
    const input = h('input', {type: 'search', id: 'query', autocomplete: 'off', spellcheck: 'false',
        placeholder: 'Search names', 'aria-label': 'Search names', 'aria-controls': 'results',
        oninput: () => update()});
    const close = () => {
        results.hidden = true;
    };
    const update = () => {
        chosen.query = input.value;
        const found = search(input.value);
        results.hidden = input.value.trim() === '';
        results.replaceChildren(
            h('p', {class: 'quiet'}, found.length === 0 ? 'Nothing has this name.'
                : counted(found.length, 'name') +
                    (found.length > mostResults ? `, the first ${mostResults} are listed` : '')),
            h('ul', null, found.slice(0, mostResults).map((item) => h('li', null,
                h('a', {href: item.hash, onclick: close},
                    h('span', {class: 'name'}, item.name), ' ',
                    h('span', {class: 'quiet'}, item.kind))))));
    };
    const box = h('search', {class: 'search', onkeydown: (event) => moveInResults(event, input,
        results, close)}, input, results);
    box.addEventListener('focusout', (event) => {
        if (!box.contains(event.relatedTarget))
            close();
    });
    input.addEventListener('focus', () => {
        if (input.value.trim() !== '')
            update();
    });
    return box;
}

function moveInResults(event, input, results, close) {
    const stops = [input, ...results.querySelectorAll('a')];
    const at = stops.indexOf(document.activeElement);
    if (event.key === 'Escape') {
        input.focus();
        close();
    } else if (event.key === 'ArrowDown' && at + 1 < stops.length) {
        stops[at + 1].focus();
    } else if (event.key === 'ArrowUp' && at > 0) {
        stops[at - 1].focus();
    } else if (event.key === 'Enter' && at === 0) {
        stops[1]?.click();
    } else {
        return;
    }
    event.preventDefault();
}
