// SPDX-License-Identifier: MIT
// Server files: who each is for, its types, their entries, and how the entries' addresses are
// chosen. The chances come with the model.

const mostAddresses = 60;

function namesOfEntry(entry) {
    return entry.names === null ? [] : entry.names.split(';');
}

function percentage(share) {
    return `${Number((100 * share).toPrecision(3))}%`;
}

/** Whom a file is for, in words. */
function readersOf(servers) {
    const right = servers.right === 'free' ? 'users with the right \u201cfree\u201d or none'
        : 'users with any other right';
    return `For ${right}, ${servers.isGray ? 'in' : 'not in'} the grey release.`;
}

function usersOwnOf(servers) {
    return model.servers.find((other) => other.isUsers && !servers.isUsers &&
        other.right === servers.right && other.isGray === servers.isGray);
}

function addressRow({address, weight, chance}) {
    return h('li', null,
        h('code', {class: 'name'}, address),
        h('span', {class: 'bar', 'aria-hidden': 'true'},
            h('span', {style: {width: `${100 * (chance ?? 0)}%`}})),
        h('span', {class: 'share'}, chance === undefined ? 'never chosen' : percentage(chance)),
        weight !== undefined && h('span', {class: 'quiet'}, `weight ${weight}`));
}

function addressesOf({addresses}) {
    if (addresses.length === 0)
        return h('span', {class: 'quiet'}, 'none');
    return [h('ul', {class: 'shares'}, addresses.slice(0, mostAddresses).map(addressRow)),
        addresses.length > mostAddresses && h('p', {class: 'quiet'},
            `${addresses.length - mostAddresses} further addresses are not listed.`)];
}

function entryId(servers, group, index) {
    return rowId('servers', servers.file, group.type, index);
}

function groupTable(servers, group) {
    return longTable(`Type ${group.type}${group.description ? `, ${visible(group.description)}` : ''}`,
        ['Servers', 'Key', 'Addresses, each with its chance', 'Place'],
        group.entries.map((entry, index) => ({
            id: entryId(servers, group, index),
            text: [entry.names ?? '', entry.key ?? '',
                ...entry.addresses.map(({address}) => address)].join(' '),
            cells: () => [
                [h('ul', {class: 'plain'}, namesOfEntry(entry).slice(0, mostAddresses).map((name) =>
                    h('li', {class: 'name'}, name === '' ? '(no name)' : name))),
                entry.servers === 0 && h('p', null, h('strong', null, 'gives no server')),
                entry.servers > mostAddresses && h('p', {class: 'quiet'},
                    `${entry.servers} servers in all`)],
                entry.key, addressesOf(entry), [lineLink(entry.at), findingMarks(entry.at)],
            ],
        })));
}

let serverTables = [];
let serverFilter = null;

function serverFile(servers) {
    const own = usersOwnOf(servers);
    return h('article', null,
        h('h3', null, servers.file),
        h('p', null, readersOf(servers), ' ', servers.isUsers
            ? h('strong', null, 'The user\u2019s own: it counts instead of the shipped one.')
            : own ? ['Shipped; the user\u2019s own ', h('code', null, own.file), ' counts instead.']
                : 'Shipped.'),
        servers.md5 !== null && h('p', {class: 'quiet'}, 'Digest ', h('code', null, servers.md5)),
        servers.groups.length === 0 && h('p', null, 'It has no group of servers.'),
        servers.groups.map((group) => {
            const made = groupTable(servers, group);
            serverTables.push(made);
            return [h('h4', {id: rowId('servers', servers.file, group.type), tabindex: -1},
                `Type ${group.type}`, ' ', h('span', {class: 'name'}, group.description ?? ''), ' ',
                findingMarks(group.at)),
            h('p', null, placeLink(group.at), group.domain !== null &&
                [' with the messaging domain ', h('code', null, group.domain)]),
            made.node];
        }));
}

function namesOfServers() {
    const names = [];
    for (const servers of model.servers ?? []) {
        for (const group of servers.groups) {
            names.push({kind: `server type ${group.type} in ${servers.file}`,
                name: group.description ?? String(group.type),
                hash: hashOf('servers', servers.file, group.type), at: group.at});
            group.entries.forEach((entry, index) => {
                for (const name of namesOfEntry(entry).slice(0, mostAddresses))
                    names.push({kind: `server in ${servers.file}`, name,
                        hash: hashOf('servers', servers.file, group.type, index), at: entry.at});
            });
        }
    }
    return names;
}

addView({
    name: 'servers',
    title: 'Servers',
    count: () => model.servers?.length ?? 0,
    names: namesOfServers,
    draw: () => {
        serverTables = [];
        if (!model.servers?.length)
            return [h('p', null, 'The root has no server files.')];
        const files = model.servers.map(serverFile);
        serverFilter = filterBox('servers', serverTables);
        return [h('p', null, 'Each server draws one of the addresses of its entry, all with the ',
            'same chance: weights have no effect. The shares are those that ',
            h('code', null, 'ygconfig simulate'), ' works with.'), serverFilter.node, files];
    },
    show: (section, parts) => {
        if (parts.length > 1)
            goToRow(rowId('servers', ...parts), serverTables, serverFilter);
    },
});
