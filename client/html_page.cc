// SPDX-License-Identifier: BSD-3-Clause
// The page around the data. All texts of models become text nodes, never markup, and the
// page may load nothing (its content policy says so).
#include "client/html_page.h"

const char kPageHead[] = R"page(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta http-equiv="Content-Security-Policy" content="default-src 'none'; style-src 'unsafe-inline'; script-src 'unsafe-inline'; base-uri 'none'; form-action 'none'">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>Schema tree</title>
<style>
:root { color-scheme: light; --back: #fff; --text: #1a1d21; --faint: #5c6670; --line: #d4d9de;
  --pick: #dcebfa; --mark: #ffe28a; --inner: #0b5cad; --leaf: #1d6b34; --list: #8a3ea0;
  --choice: #9a5b00; --call: #b0223a; --type: #00707a; }
@media (prefers-color-scheme: dark) { :root:not([data-theme=light]) { color-scheme: dark;
  --back: #16191d; --text: #e4e8ec; --faint: #98a2ad; --line: #353c44; --pick: #24405c;
  --mark: #6b5310; --inner: #7db8f5; --leaf: #7fd39a; --list: #d69be8; --choice: #e8b35e;
  --call: #ff8fa0; --type: #66cfd8; } }
:root[data-theme=dark] { color-scheme: dark; --back: #16191d; --text: #e4e8ec; --faint: #98a2ad;
  --line: #353c44; --pick: #24405c; --mark: #6b5310; --inner: #7db8f5; --leaf: #7fd39a;
  --list: #d69be8; --choice: #e8b35e; --call: #ff8fa0; --type: #66cfd8; }
* { box-sizing: border-box; }
body { margin: 0; height: 100vh; display: grid; grid-template: auto 1fr / 3fr 2fr;
  background: var(--back); color: var(--text); font: 15px/1.5 system-ui, sans-serif; }
header { grid-column: 1 / 3; display: flex; gap: .8em; align-items: center; padding: .6em 1em;
  border-bottom: 1px solid var(--line); flex-wrap: wrap; }
h1 { font-size: 1.05em; margin: 0; }
input, button { font: inherit; color: inherit; background: var(--back); padding: .2em .6em;
  border: 1px solid var(--line); border-radius: .4em; }
input { flex: 1; min-width: 12em; }
#count, #keys { color: var(--faint); }
#tree, #facts { overflow: auto; padding: .8em 1em; }
#facts { border-left: 1px solid var(--line); }
ul { list-style: none; margin: 0; padding-left: 1.3em; }
#tree > ul { padding-left: 0; }
li[aria-expanded=false] > ul, .gone { display: none; }
.row { cursor: pointer; border-radius: .3em; padding: 0 .3em; white-space: nowrap;
  font-family: ui-monospace, monospace; }
.row:hover, li[aria-selected=true] > .row { background: var(--pick); }
li:focus { outline: none; } li:focus > .row { outline: 2px solid var(--inner); }
.row::before { content: "\00a0\00a0"; color: var(--faint); }
li[aria-expanded=true] > .row::before { content: "\25be\00a0"; }
li[aria-expanded=false] > .row::before { content: "\25b8\00a0"; }
.name { font-weight: 600; } .kind, .access { color: var(--faint); font-size: .85em; }
.container > .row .name, .augment > .row .name, .module > .row .name { color: var(--inner); }
.leaf > .row .name, .leaf-list > .row .name, .anydata > .row .name, .anyxml > .row .name {
  color: var(--leaf); }
.list > .row .name { color: var(--list); }
.choice > .row .name, .case > .row .name { color: var(--choice); }
.rpc > .row .name, .action > .row .name, .notification > .row .name { color: var(--call); }
.type { color: var(--type); } .hit > .row { background: var(--mark); }
.off > .row { opacity: .55; }
dl { margin: 0; } dt { color: var(--faint); } dd { margin: 0 0 .3em 1.2em; white-space: pre-wrap;
  overflow-wrap: anywhere; font-family: ui-monospace, monospace; }
h2 { font-size: 1em; overflow-wrap: anywhere; margin-top: 0; }
@media (max-width: 50em) { body { grid-template: auto 3fr 2fr / 1fr; height: 100vh; }
  header { grid-column: 1; } #facts { border-left: 0; border-top: 1px solid var(--line); } }
</style>
</head>
<body>
<header>
<h1>Schema tree</h1>
<input id="search" type="search" placeholder="Search names, types, descriptions  ( / )"
  aria-label="Search">
<span id="count" role="status"></span>
<button id="open" type="button">Open all</button>
<button id="close" type="button">Close all</button>
<button id="theme" type="button">Light or dark</button>
<span id="keys">arrows move and fold, / searches, Esc ends a search</span>
</header>
<main id="tree"></main>
<section id="facts" aria-live="polite"><p>Choose a node.</p></section>
<script id="data" type="application/json">
)page";

const char kPageTail[] = R"page(
</script>
<script>
'use strict';
const data = JSON.parse(document.getElementById('data').textContent);
const tree = document.getElementById('tree');
const facts = document.getElementById('facts');
const search = document.getElementById('search');
const count = document.getElementById('count');
const all = [];

function make(tag, className, text) {
  const element = document.createElement(tag);
  if (className) element.className = className;
  if (text) element.textContent = text;
  return element;
}

function build(node, parent) {
  const item = make('li', node.kind + (node.off ? ' off' : ''));
  item.setAttribute('role', 'treeitem');
  item.setAttribute('aria-selected', 'false');
  item.tabIndex = -1;
  item.node = node;
  const row = make('div', 'row');
  row.append(make('span', 'kind', node.kind), ' ', make('span', 'name', node.name),
    make('span', 'marks', node.marks));
  if (node.type) row.append(' ', make('span', 'type', node.type));
  if (node.access) row.append(' ', make('span', 'access', node.access));
  item.append(row);
  item.words = [node.name, node.type].concat(
    node.facts.filter(f => f[1] === 'description').map(f => f[2])).join('\n').toLowerCase();
  all.push(item);
  parent.append(item);
  if (node.children.length === 0) return;
  item.setAttribute('aria-expanded', node.kind === 'module' ? 'true' : 'false');
  const list = make('ul');
  list.setAttribute('role', 'group');
  for (const child of node.children) build(child, list);
  item.append(list);
}

function show(item) {
  for (const other of tree.querySelectorAll('[aria-selected=true]'))
    other.setAttribute('aria-selected', 'false');
  item.setAttribute('aria-selected', 'true');
  facts.replaceChildren(make('h2', '', item.node.kind + ' ' + (item.node.path || item.node.name)));
  const list = make('dl');
  for (const [level, label, text] of item.node.facts) {
    const term = make('dt', '', label);
    const value = make('dd', '', text);
    term.style.marginLeft = value.style.marginLeft = (level * 1.2) + 'em';
    list.append(term, value);
  }
  facts.append(list);
}

function fold(item, open) {
  if (item.hasAttribute('aria-expanded')) item.setAttribute('aria-expanded', String(open));
}

function go(item) {
  if (!item) return;
  for (const other of tree.querySelectorAll('[tabindex="0"]')) other.tabIndex = -1;
  item.tabIndex = 0;
  item.focus();
  item.firstChild.scrollIntoView({block: 'nearest'});
  show(item);
}

const visible = () => all.filter(item => item.firstChild.offsetParent !== null);
const parentOf = item => item.parentElement.closest('li');

function find() {
  const wanted = search.value.trim().toLowerCase();
  let hits = 0;
  for (const item of all) item.classList.toggle('gone', wanted !== '');
  for (const item of all) {
    const hit = wanted !== '' && item.words.includes(wanted);
    item.classList.toggle('hit', hit);
    if (!hit) continue;
    ++hits;
    item.classList.remove('gone');
    for (let up = parentOf(item); up; up = parentOf(up)) {
      up.classList.remove('gone');
      fold(up, true);
    }
  }
  count.textContent = wanted === '' ? '' : hits + (hits === 1 ? ' node' : ' nodes');
}

tree.addEventListener('click', event => {
  const item = event.target.closest('li');
  if (!item) return;
  if (event.target.closest('.row')) fold(item, item.getAttribute('aria-expanded') === 'false');
  go(item);
});

tree.addEventListener('keydown', event => {
  const item = event.target.closest('li');
  if (!item || event.ctrlKey || event.altKey || event.metaKey) return;
  const rows = visible();
  const at = rows.indexOf(item);
  const open = item.getAttribute('aria-expanded');
  const keys = {
    ArrowDown: () => go(rows[at + 1]),
    ArrowUp: () => go(rows[at - 1]),
    ArrowRight: () => open === 'false' ? fold(item, true) : open === 'true' && go(rows[at + 1]),
    ArrowLeft: () => open === 'true' ? fold(item, false) : go(parentOf(item)),
    Home: () => go(rows[0]),
    End: () => go(rows[rows.length - 1]),
    Enter: () => fold(item, open === 'false'),
    ' ': () => fold(item, open === 'false')
  };
  if (!keys[event.key]) return;
  event.preventDefault();
  keys[event.key]();
});

document.addEventListener('keydown', event => {
  if (event.key === '/' && event.target !== search) {
    event.preventDefault();
    search.focus();
  } else if (event.key === 'Escape' && search.value !== '') {
    search.value = '';
    find();
  } else if (event.target === search && (event.key === 'ArrowDown' || event.key === 'Enter')) {
    event.preventDefault();
    go(tree.querySelector('.hit') || visible()[0]);
  }
});

search.addEventListener('input', find);
document.getElementById('open').onclick = () => all.forEach(item => fold(item, true));
document.getElementById('close').onclick = () => all.forEach(item => fold(item, false));
document.getElementById('theme').onclick = () => {
  const dark = getComputedStyle(document.documentElement).colorScheme === 'dark';
  document.documentElement.dataset.theme = dark ? 'light' : 'dark';
};
const top_ = make('ul');
top_.setAttribute('role', 'tree');
for (const module of data) build(module, top_);
tree.append(top_);
if (all[0]) all[0].tabIndex = 0;
document.title = data.map(module => module.name).join(', ');
</script>
</body>
</html>
)page";
