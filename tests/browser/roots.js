// SPDX-License-Identifier: MIT
// Roots that tests make.

/** A text as the value of an XML attribute, or between tags. */
export function escaped(text) {
    return text.replace(/[&<>"\u0080-\u009f\u2028\u202e\u2066\u200b]/g, (character) =>
        `&#${character.codePointAt(0)};`);
}

/** Files in which every text that an author can choose is one of those given. */
export function rootOfTexts(texts) {
    const each = (form) => texts.map((text, index) => form(escaped(text), index)).join('\n');
    const first = escaped(texts[0]);
    const panel = (text) => `<panel name="${text}" foldPosition="${text}" display_border="${text}"
        switch_expand_panel="${text}" excute_command_info="${text}" is_border_radius="true"
        is_dis_split_space="true"><element name="${text}" param="${text}" property="${text}"
        uuid="${text}" event="${text}" event_dispatch_dest="${text}" event_dispatch_src="${text}"
        ${text.includes('\'') ? '' : `other='${text}'`}/></panel>`;
    const palette = `<ROOT><SWPALETTE>
        <COLORES>${each((text) => `<COLOR NAME="${text}" R="9" G="99" B="200"/>`)}</COLORES>
        <FONTS>${each((text) => `<FONT NAME="${text}" HEIGHT="12" FACE="${text}"/>`)}</FONTS>
        <BITMAPS>${each((text) => `<BITMAP NAME="${text}" PATH="${text}"/>`)}</BITMAPS>
        <APP_MAP>
        <COLORES>${each((text) => `<ITEM KEY="${text}" VALUE="${text}"/>`)}</COLORES>
        <FONTS>${each((text) => `<ITEM KEY="${text}" VALUE="${text}"/>`)}</FONTS>
        </APP_MAP></SWPALETTE></ROOT>`;
    // One group with an entry for each text: of the types only some are loaded.
    const servers = `<application><server type="1" name="${first}" domain="${first}">${each((text) =>
        `<addr key="${text}" name="${text}" addrs="${text};192.0.2.1:80"/>`)}</server></application>`;
    const event = (text) => `<event name="${text}" command="${text}" dispatch="${text}"
        disptch="${text}" data="${text}" change_style="${text}"/>`;
    return {
        'host.json': JSON.stringify({rightLevel: 'free', configServer: texts[0],
            mappings: {[texts[0]]: {[texts[1]]: texts}}}),
        'config/custompage_template.xml': `<styles default_style="${first}">${each((text) =>
            `<style name="${text}" focus="${text}">${panel(text)}<magic_panels name="${text}"/>
            <panel><reuse_panel name="${text}"/></panel></style>`)}</styles>`,
        'config/tab_styles.xml': `<styles>${each((text) =>
            `<style name="${text}" focus="${text}">${panel(text)}</style>`)}</styles>`,
        'soft_optimize/custompage_template.xml': '<styles/>',
        'config/magic_panels.xml': `<magic_panel_groups>${each((text) =>
            `<magic_panels name="${text}">${each((member) =>
                `<magic_panel name="${member}">${panel(member)}</magic_panel>`)}</magic_panels>`)}
            </magic_panel_groups>`,
        'base_optimize/reuse_panels.xml': `<reuse_panels>${each((text) =>
            `<reuse_panel name="${text}">${panel(text)}</reuse_panel>`)}</reuse_panels>`,
        'config/events.xml': `<event_list><command_event>${each((text) =>
            `<command name="${text}" change_style="${text}" dispatch="${text}" data="${text}"/>`)}
            </command_event>${each((text) => `<event_template name="${text}">${event(text)}
            </event_template><element_event name="${text}"><include src="${text}"/>
            ${each(event)}</element_event>`)}</event_list>`,
        'storage/palette_white.xml': palette,
        'storage/palette_black.xml': palette,
        'storage/skeleton_v1.xml': servers,
        'storage/skeleton_l2_v1.xml': servers,
        'storage/app_config.xml': `<config><section>${each((text, index) =>
            `<item${index} description="${text}">${text}</item${index}>`)}</section></config>`,
        'user/app_config.xml': `<config><section>${each((text, index) =>
            `<item${index} description="${text}">user ${text}</item${index}>`)}</section></config>`,
        'storage/web_page_urls.xml': `<urls>${each((text) =>
            `<url key="${text}">${text}</url>`)}</urls>`,
        'storage/request_urls_json.txt': JSON.stringify({md5Value: texts[0],
            urlConfigList: texts.map((text) => ({urlKey: text, urlValue: text}))}),
    };
}

/** Numbers from 0 to below 1 that are the same in every run. */
export function numbersOf(seed) {
    let state = seed >>> 0;
    return () => {
        state = (state + 0x6d2b79f5) >>> 0;
        let mixed = Math.imul(state ^ (state >>> 15), state | 1);
        mixed ^= mixed + Math.imul(mixed ^ (mixed >>> 7), mixed | 61);
        return ((mixed ^ (mixed >>> 14)) >>> 0) / 4294967296;
    };
}

const sizes = ['', '0', '-1', '1', '17', '0.5', '33.4', '40', '800', '5000', '1e9', '-7', 'nan', 'inf',
    '-inf', '1e39', '2147483648', 'x'];
const shares = ['', '0', '1', '0.25', '0.333', '3', '-2', 'nan', 'inf', '1e-30', '1e30', 'x'];

/**
 * Files whose pages have sizes that cannot hold, contradict each other or are none, many children,
 * deep nesting, scroll panels, slots and reuse panels.
 */
export function generatedRoot(seed) {
    const number = numbersOf(seed);
    const below = (count) => Math.floor(number() * count);
    const one = (list) => list[below(list.length)];
    let made = 0;
    const attributes = () => {
        const list = [];
        const add = (name, values) => {
            const value = one(values);
            if (value !== '' && number() < 0.4)
                list.push(`${name}="${value}"`);
        };
        add('vertical', ['true']);
        add('split_scale', shares);
        add('fix_size', sizes);
        add('min_size', sizes);
        add('max_size', sizes);
        add('is_dis_split_space', ['true', '']);
        add('is_dis_wide_bound', ['true', '', '']);
        add('is_border_radius', ['true', '']);
        add('foldPosition', ['left', 'right', 'top', 'bottom', 'middle']);
        add('display_border', ['left', 'top;right', 'all', 'none', 'bottom']);
        if (number() < 0.15)
            list.push(`is_scroll_view="true" scroll_size="${one(sizes)}"`);
        return list.join(' ');
    };
    const element = () => `<element name="E${below(9)}" param="p${below(9)}"/>`;
    const panel = (depth, tag = `panel name="p${++made}"`) => {
        const children = depth === 0 ? below(2) : number() < 0.05 ? 60 : below(5);
        const inside = [];
        for (let child = 0; child < children; ++child) {
            const kind = number();
            if (depth > 0 && kind < 0.6 && made < 400)
                inside.push(panel(number() < 0.2 && children < 5 ? depth : depth - 1));
            else if (kind < 0.8)
                inside.push(element());
            else if (kind < 0.9)
                inside.push(`<magic_panels name="g${below(3)}"/>`);
            else
                inside.push(`<reuse_panel name="r${below(3)}"/>`);
        }
        return `<${tag} ${attributes()}>${inside.join('')}</${tag.split(' ')[0]}>`;
    };
    const simple = (tag) => {
        const inside = Array.from({length: below(4)}, () =>
            `<panel name="p${++made}" ${attributes()}>${element()}</panel>`);
        return `<${tag} ${attributes()}>${inside.join('')}</${tag.split(' ')[0]}>`;
    };
    const page = (name) => {
        made = 0;
        let nested = panel(3);
        if (number() < 0.2) {
            for (let level = 0; level < 120; ++level)
                nested = `<panel name="d${level}" ${attributes()}>${nested}</panel>`;
        }
        return `<style name="${name}">${nested}${number() < 0.3 ? panel(2) : ''}</style>`;
    };
    const pages = Array.from({length: 3}, (_, index) => page(`page${index}`));
    const groups = [0, 1, 2].map((index) => `<magic_panels name="g${index}">${
        [0, 1, 2].slice(0, 1 + below(3)).map((member) => `<magic_panel name="m${member}">${
            simple(`panel name="g${index}m${member}"`)}</magic_panel>`).join('')}</magic_panels>`);
    const reuse = [0, 1, 2].map((index) => simple(`reuse_panel name="r${index}"`));
    return {
        'config/custompage_template.xml': `<styles>${pages.join('\n')}</styles>`,
        'config/magic_panels.xml': `<groups>${groups.join('\n')}</groups>`,
        'base_optimize/reuse_panels.xml': `<reuse>${reuse.join('\n')}</reuse>`,
        'soft_optimize/custompage_template.xml': '<styles/>',
    };
}

/** Files of a little more than a million bytes, as a large terminal has them. */
export function largeRoot() {
    const list = (count, form) => Array.from({length: count}, (_, index) => form(index)).join('\n');
    const panel = (page, index) => `<panel name="panel_${page}_${index}" split_scale="0.25"
        vertical="true"><element name="QuoteGrid" param="page=${page},row=${index}"
        uuid="view.${page}.${index}" event="group_${index}" event_dispatch_dest="view.${page}.0"/>
        <element name="TrendChart" param="days=1" uuid="chart.${page}.${index}"/></panel>`;
    const palette = `<ROOT><SWPALETTE><COLORES>${list(600, (index) =>
        `<COLOR NAME="colour_${index}" R="${index % 256}" G="9" B="99"/>`)}</COLORES><APP_MAP>
        <COLORES>${list(600, (index) =>
        `<ITEM KEY="View_${index}.text" VALUE="colour_${index}"/>`)}</COLORES></APP_MAP>
        </SWPALETTE></ROOT>`;
    return {
        'config/custompage_template.xml': `<styles default_style="page 0">${list(200, (page) =>
            `<style name="page ${page}">${list(12, (index) => panel(page, index))}</style>`)}
            </styles>`,
        'config/magic_panels.xml': `<groups>${list(40, (group) => `<magic_panels name="g${group}">
            ${list(6, (member) => `<magic_panel name="m${member}">${panel(group, member)}
            </magic_panel>`)}</magic_panels>`)}</groups>`,
        'soft_optimize/custompage_template.xml': '<styles/>',
        'config/events.xml': `<event_list><command_event>${list(600, (index) =>
            `<command name="command_${index}" change_style="page ${index % 200}"/>`)}
            </command_event>${list(400, (group) => `<element_event name="group_${group}">
            ${list(6, (index) => `<event name="event_${index}"
            command="command_${(group + index) % 600}"/>`)}</element_event>`)}</event_list>`,
        'storage/palette_white.xml': palette,
        'storage/palette_black.xml': palette,
        'storage/web_page_urls.xml': `<urls>${list(500, (index) =>
            `<url key="page_${index}">https://page.example.com/${index}</url>`)}</urls>`,
    };
}
