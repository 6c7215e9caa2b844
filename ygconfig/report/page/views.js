// SPDX-License-Identifier: MIT
// The views that the page has, and what the reader has chosen.

/**
 * The views by name, in their order. A view is
 *   name      the first part of its hash, as in "#palette"
 *   title     its heading
 *   count()   how many things it shows, for the list of views; absent for none
 *   names()   what can be searched for: a list of {kind, name, hash, at}
 *   draw()    its content, a list of nodes; called when it is first looked at and for a new model
 *   show(section, parts)  goes to what the further parts of the hash name; may be absent
 *   print()   its content on paper; absent when that is the same
 */
const views = new Map();

function addView(view) {
    views.set(view.name, view);
}

/** What the reader has chosen; it outlives a change of the model. */
const chosen = {
    theme: matchMedia('(prefers-color-scheme: dark)').matches ? 1 : 0,
    query: '',
    of: {},
};

/** What the reader has chosen in a view. */
function choices(viewName) {
    chosen.of[viewName] ??= {};
    return chosen.of[viewName];
}

/** Called with the theme, 0 light or 1 dark, whenever another one is chosen. */
const themeListeners = new Set();
