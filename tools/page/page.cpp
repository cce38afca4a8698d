// SPDX-License-Identifier: Apache-2.0
#include "tools/page/page.h"

#include <utility>

namespace {

constexpr char kHead[] = R"page(<!doctype html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta http-equiv="Content-Security-Policy"
  content="default-src 'none'; style-src 'unsafe-inline'; script-src 'unsafe-inline'">
<title>UWB calibration by country</title>
<style>
:root {
  color-scheme: light dark;
  --back: #fff; --text: #1c1e21; --faint: #5b616b; --line: #c9ced6; --raised: #f3f5f8;
  --mark: #ffe9a8; --accent: #0b57d0; --error: #b3261e; --warning: #8a5300; --note: #0b57d0;
  --f0: #cfe8ff; --f1: #ffe0b8; --f2: #d3f2cf; --f3: #f3d3ef; --f4: #d9d6ff; --f5: #fbd3d3;
}
@media (prefers-color-scheme: dark) {
  :root {
    --back: #15171b; --text: #e8eaed; --faint: #a4abb6; --line: #3c424c; --raised: #20242b;
    --mark: #574500; --accent: #8ab4f8; --error: #ff9a92; --warning: #ffc46b; --note: #8ab4f8;
    --f0: #14466e; --f1: #6b4208; --f2: #1f5a2a; --f3: #64295c; --f4: #3e3a8c; --f5: #74302f;
  }
}
* { box-sizing: border-box; }
html { scroll-padding-bottom: 36vh; }
body { margin: 0 auto; max-width: 90rem; padding: 1rem 1.5rem 3rem; background: var(--back);
  color: var(--text); font: 1rem/1.45 system-ui, sans-serif; }
h1 { font-size: 1.5rem; margin: 0; }
h2 { font-size: 1.15rem; margin: 2rem 0 .5rem; }
h3 { font-size: 1rem; margin: 0; }
p { margin: .3rem 0; }
.faint, small { color: var(--faint); }
code, pre, button { font-family: ui-monospace, monospace; font-size: .9rem; }
code, pre { overflow-wrap: anywhere; white-space: pre-wrap; margin: 0; }
input, select { font: inherit; padding: .25rem .5rem; color: inherit; background: var(--back);
  border: 1px solid var(--faint); border-radius: .3rem; max-width: 100%; }
button { padding: 0; border: 0; background: none; color: inherit; cursor: pointer; }
button:hover, button:focus-visible, .lit { outline: 3px solid var(--accent); outline-offset: -3px; }
table { border-collapse: collapse; }
.scroll { overflow-x: auto; }
#values th, #values td { border: 1px solid var(--line); text-align: left; vertical-align: top; }
#values th, #values thead td { padding: .4rem .6rem; background: var(--raised); }
#values thead th { max-width: 20rem; min-width: 10.5rem; }
#values tr > :first-child { position: sticky; left: 0; font-weight: 600; }
#values tbody td { padding: 0; height: 1px; }
#values button { width: 100%; height: 100%; padding: .2rem .6rem; line-height: 1.2; text-align: left; }
#values small { display: block; font-weight: 400; }
#values .differs small { color: inherit; }
#values .other { display: none; }
.differs { background: var(--mark); font-weight: 700; }
.differs::after { content: "\2260"; float: right; margin-left: .5rem; }
.differs:has(small)::after { margin-top: -1.4em; }
.country, .tag { display: inline-block; padding: 0 .35rem; font-size: .9rem; font-weight: 400;
  border: 1px solid var(--line); border-radius: .3rem; }
.country { margin: .1rem .2rem 0 0; background: var(--back); overflow-wrap: anywhere; }
.hit { background: var(--accent); color: var(--back); }
#detail { position: sticky; bottom: 0; max-height: 35vh; overflow-y: auto; margin-top: 1rem;
  padding: .7rem 1rem; background: var(--raised); border: 1px solid var(--faint);
  border-radius: .4rem; }
.close { float: right; padding: 0 .4rem; border: 1px solid var(--faint); border-radius: .3rem; }
#detail div { display: grid; grid-template-columns: minmax(2rem, auto) 1fr; gap: 0 1rem; }
#detail ul { margin: 0; padding: 0; list-style: none; }
ul { margin: .2rem 0; padding-left: 1.2rem; overflow-wrap: anywhere; }
.overridden { color: var(--faint); }
#map th { padding: 0 .4rem; color: var(--faint); font-weight: 400; font-size: .8rem; }
#map td { padding: 0; }
#map button { width: 2.2rem; height: 2rem; }
#map .reserved { color: var(--faint); }
#map .changed { font-weight: 700; text-decoration: underline; }
article { border-left: .3rem solid; padding: .2rem .8rem; margin: .8rem 0; }
article > * { color: var(--text); }
.error { color: var(--error); }
.warning { color: var(--warning); }
.note { color: var(--note); }
@media print {
  #detail, .screen { display: none; }
  :root { font-size: 9px; print-color-adjust: exact; }
  body { max-width: none; padding: 0; }
  .scroll { overflow: visible; }
  #values thead th { min-width: 0; }
}
</style>
</head>
<body>
<h1>UWB calibration by country</h1>
<p id="summary"></p>
<p id="remark" class="error"></p>
<noscript><p>This page draws its tables with JavaScript, which is switched off.</p></noscript>
<p class="screen"><label>Find a country: <input id="search" type="search" autocomplete="off"
  placeholder="us"></label> <output id="found" for="search"></output></p>
<p class="screen faint">A column is a block, with the countries that get it. &#8800; marks a value
that is not <span id="compared">the default's</span>. Point at a value, or go to it with the arrow keys, to see the line that
sets it; a click keeps that in view.</p>
<div class="scroll"><table id="values"></table></div>
<h2>The 82 bytes of <select id="block" aria-label="block"></select></h2>
<div class="scroll"><table id="map"></table></div>
<p><output id="field">Point at a byte to see its field.</output></p>
<h2>Loads without a block</h2>
<div id="without"></div>
<h2>What lint finds</h2>
<div id="findings"></div>
<aside id="detail" aria-live="polite" hidden></aside>
<script type="application/json" id="data">)page";

constexpr char kTail[] = R"page(</script>
<script>
'use strict';
const byId = id => document.getElementById(id);
const {name, remark, state: {lines, blocks, countries}, lint} = JSON.parse(byId('data').textContent);
// The block that the others are compared with is the first.
blocks.sort((a, b) => b.is_default - a.is_default);
const usual = blocks[0];

// The children are elements, or texts that are shown as they are.
function make(tag, attributes, ...children) {
  const element = document.createElement(tag);
  for (const [key, value] of Object.entries(attributes)) element.setAttribute(key, value);
  element.append(...children);
  return element;
}

const nameOf = word =>
  word === 'other' ? 'any other country' : word === 'none' ? 'no country code' : word;
const counted = (count, thing) => `${count} ${thing}${count === 1 ? '' : 's'}`;
const crcOf = block => '0x' + block.fields[0].bytes.replace(' ', '').toUpperCase();
const isReserved = field => !('value' in field);
const loadsOf = block => countries.filter(load => block.countries.includes(load.country));
const settingsOf = (load, field) => load.settings[field.name] || [];
const differs = (block, index) => block.fields[index].bytes !== usual.fields[index].bytes;
const placeOf = field => `offset ${field.offset}, ${counted(field.size, 'byte')}: ${field.bytes}`;

// The value as the text has it, and the number or byte that it becomes where that is another.
function valueOf(block, field) {
  if (isReserved(field)) return ['', ''];
  const parameters = settingsOf(loadsOf(block)[0], field);
  const text = parameters.length === 1 && parameters[0].length ?
    lines[parameters[0][parameters[0].length - 1]].value : field.meaning || String(field.value);
  if (text === String(field.value)) return [text, ''];
  return [text, /^(GPIO|port)/.test(field.meaning) ? `byte ${field.bytes}` : String(field.value)];
}

function lineItem(index, overridden) {
  const {path, line, text} = lines[index];
  return make('li', {class: overridden ? 'overridden' : ''},
    `${overridden ? 'overrides ' : ''}${path}:${line}: `, make('code', {}, text));
}

function withoutLine(field) {
  if (isReserved(field)) return 'reserved, always zero';
  return field.name === 'crc' ? 'computed over all the other bytes' :
    'copied from channel 5: both channels share the antenna';
}

// The lines that set a value: once for all loads that have the same ones.
function sourcesOf(block, field) {
  const sources = new Map();
  for (const load of loadsOf(block)) {
    const key = JSON.stringify(settingsOf(load, field));
    sources.set(key, [...sources.get(key) || [], nameOf(load.country)]);
  }
  return [...sources].map(([key, names]) => {
    const items = JSON.parse(key).flatMap(parameter =>
      parameter.reverse().map((index, i) => lineItem(index, i > 0)));
    return make('div', {}, make('b', {}, names.join(', ')),
      make('ul', {}, ...(items.length ? items : [make('li', {}, withoutLine(field))])));
  });
}

let kept = false;
function hide() {
  kept = false;
  byId('detail').hidden = true;
}

function show(block, index, keep) {
  if (kept && !keep) return;
  kept = keep;
  const field = block.fields[index];
  const [text, number] = valueOf(block, field);
  const close = make('button', {class: 'close'}, 'close');
  close.addEventListener('click', hide);
  byId('detail').replaceChildren(close,
    make('h3', {}, `${field.name} ${text}${number && ` (${number})`}`),
    make('p', {class: 'faint'}, `block ${crcOf(block)}, ${placeOf(field)}`),
    ...sourcesOf(block, field));
  byId('detail').hidden = false;
}

// Shows the field when one points at the element, goes to it or clicks on it.
function showing(element, block, index, alike) {
  for (const event of ['mouseenter', 'focus', 'click']) {
    element.addEventListener(event, () => {
      show(block, index, event === 'click');
      if (event !== 'mouseenter') element.scrollIntoView({block: 'nearest', inline: 'nearest'});
      if (alike) alike();
    });
  }
  return element;
}

function headOf(block) {
  return make('th', {scope: 'col'}, `${crcOf(block)} `,
    block.is_default ? make('span', {class: 'tag'}, 'default') : '',
    make('div', {}, ...block.countries.map(word =>
      make('span', {class: 'country', 'data-country': word}, nameOf(word)))));
}

function cellOf(block, index) {
  const [text, number] = valueOf(block, block.fields[index]);
  const button = make('button', {tabindex: -1, class: differs(block, index) ? 'differs' : ''}, text,
    number && make('small', {}, number));
  return make('td', {}, showing(button, block, index));
}

function drawValues() {
  const rows = [];
  for (const [index, field] of usual.fields.entries()) {
    if (isReserved(field) || field.name === 'crc') continue;
    rows.push(make('tr', {}, make('th', {scope: 'row'}, field.name),
      ...blocks.map(block => cellOf(block, index))));
  }
  byId('values').append(make('thead', {}, make('tr', {}, make('td', {}, 'CRC, countries'),
    ...blocks.map(headOf))), make('tbody', {}, ...rows));
  document.querySelector('#values button').tabIndex = 0;
}

// One value can be reached with the tabulator key, the others from there with the arrows.
byId('values').addEventListener('keydown', event => {
  const steps = {ArrowLeft: [0, -1], ArrowRight: [0, 1], ArrowUp: [-1, 0], ArrowDown: [1, 0]};
  const [down, right] = steps[event.key] || [0, 0];
  const cell = event.target.closest('td');
  const row = byId('values').rows[cell.parentNode.rowIndex + down];
  let next = row && row.cells[cell.cellIndex + right];
  while (next && next.offsetParent === null) next = row.cells[next.cellIndex + right];
  const button = next && next.querySelector('button');
  if (!button || next === cell) return;
  event.preventDefault();
  event.target.tabIndex = -1;
  button.tabIndex = 0;
  kept = false;
  button.focus();
});

function byteOf(block, index, at) {
  const field = block.fields[index];
  const byte = make('button', {'data-field': index, tabindex: at === field.offset ? 0 : -1,
    'aria-label': `${field.name}, offset ${at}`,
    class: (isReserved(field) ? 'reserved ' : '') + (differs(block, index) ? 'changed' : '')},
    field.bytes.split(' ')[at - field.offset]);
  if (!isReserved(field)) byte.style.background = `var(--f${index % 6})`;
  return showing(byte, block, index, () => {
    byId('field').textContent = `${field.name}, ${placeOf(field)}`;
    for (const other of document.querySelectorAll('#map button')) {
      other.classList.toggle('lit', other.dataset.field === String(index));
    }
  });
}

function drawMap(block) {
  const columns = [...Array(16).keys()].map(at => make('th', {scope: 'col'}, String(at)));
  const rows = [make('tr', {}, make('th', {}), ...columns)];
  for (const [index, field] of block.fields.entries()) {
    for (let at = field.offset; at < field.offset + field.size; ++at) {
      if (at % 16 === 0) rows.push(make('tr', {}, make('th', {scope: 'row'}, String(at))));
      rows[rows.length - 1].append(make('td', {}, byteOf(block, index, at)));
    }
  }
  byId('map').replaceChildren(...rows);
}

function drawWithout() {
  const items = countries.filter(load => !load.valid).map(load =>
    make('li', {}, make('b', {}, nameOf(load.country)),
      `: ${[load.problem, ...load.missing.slice(0, 1)].join(': ')}`,
      ...load.missing.slice(1).map(key => `, ${key}`)));
  byId('without').append(items.length ? make('ul', {}, ...items) : 'None.');
}

function findingOf(finding) {
  const {severity, rule, message, path, line, column, source, consequences} = finding;
  const loads = finding.countries.length === countries.length ?
    `all ${counted(countries.length, 'load')}` : finding.countries.map(nameOf).join(', ');
  return make('article', {class: severity},
    make('p', {}, make('b', {class: severity}, `${severity}: `), `${message} [${rule}]`),
    make('p', {class: 'faint'}, `${path}:${line}:${column}, in ${loads}`),
    make('pre', {}, source),
    make('ul', {}, ...consequences.map(item =>
      make('li', {}, `leads to: ${item.message} [${item.rule}]`))));
}

// The value that the tabulator key reaches must be in view.
function showTabStop() {
  const stop = document.querySelector('#values [tabindex="0"]');
  if (!stop || stop.offsetParent !== null) return;
  stop.tabIndex = -1;
  document.querySelector('#values button').tabIndex = 0;
}

// Shows the blocks of the countries that are searched, beside the first.
function search() {
  const wanted = byId('search').value.trim().toLowerCase();
  const isWanted = word => wanted !== '' && nameOf(word).toLowerCase().includes(wanted);
  blocks.forEach((block, i) => {
    const is_other = wanted !== '' && i > 0 && !block.countries.some(isWanted);
    for (const row of byId('values').rows) row.cells[i + 1].classList.toggle('other', is_other);
  });
  showTabStop();
  for (const element of document.querySelectorAll('.country')) {
    element.classList.toggle('hit', isWanted(element.dataset.country));
  }
  const found = countries.map(load => load.country).filter(isWanted).map(word => {
    const block = blocks.find(one => one.countries.includes(word));
    return `${nameOf(word)}: ${block ? 'block ' + crcOf(block) : 'no block'}`;
  });
  byId('found').textContent = wanted && (found.join('; ') || 'no such country');
}

byId('summary').textContent = `${name && name + ': '}${counted(countries.length, 'load')}, ` +
  `${counted(blocks.length, 'different block')}, ${lint.without_block} without a block; ` +
  `lint: ${counted(lint.findings.length, 'finding')}`;
byId('remark').textContent = remark;
if (usual) {
  if (!usual.is_default) byId('compared').textContent = "that of the first column";
  drawValues();
  byId('block').append(...blocks.map((block, i) =>
    make('option', {value: i}, `${crcOf(block)}: ${block.countries.map(nameOf).join(', ')}`)));
  byId('block').addEventListener('change', () => drawMap(blocks[byId('block').value]));
  drawMap(usual);
}
drawWithout();
byId('findings').append(...(lint.findings.length ? lint.findings.map(findingOf) : ['Nothing.']));
byId('search').addEventListener('input', search);
document.addEventListener('keydown', event => event.key === 'Escape' && hide());
</script>
</body>
</html>
)page";

}  // namespace

std::string pageOf(const std::string& name, const std::string& remark, Json::Value state,
                   Json::Value lint) {
  Json::Value data;
  data["name"] = name;
  data["remark"] = remark;
  data["state"] = std::move(state);
  data["lint"] = std::move(lint);
  std::string page = kHead;
  // A script's data ends at the first end tag, also in a text.
  for (const char c : foreignDocumentOf(data, "")) page += c == '<' ? "\\u003c" : std::string(1, c);
  return page + kTail;
}
