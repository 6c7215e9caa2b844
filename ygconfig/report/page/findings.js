// SPDX-License-Identifier: MIT
// What lint finds, as a list.

const severities = ['error', 'warning', 'info'];

addView({
    name: 'findings',
    title: 'Findings',
    count: () => model.findings.length,
    names: () => [],
    draw: () => [
        h('p', null, model.findings.length === 0 ? 'Nothing was found.'
            : severities.map((severity) => [severity,
                model.findings.filter((finding) => finding.severity === severity).length])
                .filter(([, count]) => count > 0)
                .map(([severity, count]) => counted(count, severity,
                    severity === 'info' ? 'info' : `${severity}s`)).join(', ')),
        h('ol', {class: 'findings'}, model.findings.map((finding, index) =>
            h('li', {id: `finding-${index + 1}`, class: finding.severity, tabindex: -1},
                findingContent(finding)))),
    ],
    show: (section, [number]) => {
        const item = number && section.querySelector(`#finding-${Number(number)}`);
        if (!item)
            return;
        item.scrollIntoView({block: 'center'});
        item.focus({preventScroll: true});
    },
});

function findingContent(finding) {
    return [
        h('p', null, h('strong', {class: `mark ${finding.severity}`}, finding.severity), ' ',
            finding.message, ' ', h('code', {class: 'quiet'}, finding.rule)),
        finding.readAs && h('p', null, finding.readAs),
        finding.suggestion !== undefined && h('p', null, 'Probably meant: ',
            h('code', null, finding.suggestion)),
        h('p', null, placeLink(finding.at)),
        placesList('Related', finding.related),
        placesList('Follows from it', finding.consequences),
    ];
}

function placesList(title, places) {
    return places && [h('p', {class: 'quiet'}, title), h('ul', null, places.map((place) =>
        h('li', null, place.message, ' ', placeLink(place.at))))];
}
