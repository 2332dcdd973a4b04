// Puts the page together.

import { readDetails, readTable } from './data.js';
import { Density } from './density.js';
import { Details } from './details.js';
import { makeFile, save } from './download.js';
import { findPlace, passingRows, sortRows } from './filter.js';
import { drawOverview } from './overview.js';
import { cut, grouped, Repeats } from './repeats.js';
import { Table } from './table.js';
import { startTheme, switchTheme } from './theme.js';

const byId = (id) => document.getElementById(id);

const MAX_LISTED_RECORDS = 2000;
const MAX_NAME_LENGTH = 80;

/** The state of the list of repeats: what the fields ask for, and the order. */
class RepeatList {
  constructor(repeats) {
    this.repeats = repeats;
    this.column = '';
    this.isDescending = false;
    this.form = byId('filters');
    this.details = new Details(byId('repeat'), repeats);
    this.table = new Table(byId('table'), repeats, {
      open: (place) => this.details.open(this.shown, place),
      sort: (column) => this.sort(column),
    });
    this.details.onMove = (place) => this.table.go(place);
    let timer = 0;
    this.form.addEventListener('input', () => {
      clearTimeout(timer);
      timer = setTimeout(() => this.update(), 120);
    });
    this.form.addEventListener('reset', () => setTimeout(() => this.update()));
    this.form.addEventListener('submit', (event) => event.preventDefault());
    // Sent by Enter too; the list is then as the fields ask at once.
    this.form.addEventListener('change', () => {
      clearTimeout(timer);
      this.update();
    });
    byId('save-bed').addEventListener('click', () => this.save('bed'));
    byId('save-tsv').addEventListener('click', () => this.save('tsv'));
    this.update();
  }

  /** Returns what the fields ask for. */
  wanted() {
    const wanted = {};
    for (const field of this.form.elements) {
      if (!field.name || field.value.trim() === '' || !field.checkValidity()) continue;
      wanted[field.name] = field.type === 'number' ? Number(field.value) : field.value;
    }
    return wanted;
  }

  /** Fills fields of the form, clears the others, and shows what passes. */
  ask(values) {
    this.form.reset();
    for (const [name, value] of Object.entries(values)) this.form.elements[name].value = value;
    this.update();
    byId('repeats').scrollIntoView({ behavior: 'smooth' });
  }

  update() {
    const { repeats } = this;
    this.shown = passingRows(repeats, this.wanted());
    if (this.column) sortRows(repeats, this.shown, this.column, this.isDescending);
    this.table.show(this.shown, this.column, this.isDescending);
    const { head } = repeats;
    const all = head.rows === head.total.repeats ? '' : ` listed, of ${grouped(head.total.repeats)} in the report`;
    byId('count').textContent = `${grouped(this.shown.length)} of ${grouped(head.rows)} repeats${all}`;
    byId('save-note').textContent = '';
    byId('nothing').hidden = this.shown.length > 0;
  }

  sort(column) {
    this.isDescending = this.column === column ? !this.isDescending : !['record', 'start', 'end', 'unit'].includes(column);
    this.column = column;
    this.update();
  }

  async save(format) {
    const { repeats } = this;
    await repeats.detailsReady;
    const { blob, refused } = makeFile(repeats, this.shown, format);
    save(blob, `repeats.${format}`);
    const notes = [`Saved ${grouped(this.shown.length - refused)} repeats as ${format.toUpperCase()}.`];
    if (refused > 0) notes.push(`${grouped(refused)} are missing: the names of their records cannot stand in ${format.toUpperCase()}.`);
    if (repeats.head.left_out > 0 && format === 'tsv') notes.push('Edits and alignments that this page leaves out are dots.');
    byId('save-note').textContent = notes.join(' ');
  }
}

/** Connects the fields and keys of the density with its chart. */
function startDensity(data, repeats, list) {
  const { records, head } = data;
  byId('window').textContent = `Share of bases in repeats, in windows of ${grouped(head.window)} bp`;
  if (head.total.length === 0) {
    byId('density-chart').textContent = 'There are no bases.';
    byId('density-chart').classList.add('none');
    byId('density-form').hidden = true;
    return;
  }
  const density = new Density(byId('density-chart'), data, repeats);
  const select = byId('density-record');
  const longest = Array.from({ length: records.count }, (_, i) => i);
  if (records.count > MAX_LISTED_RECORDS) {
    longest.sort((a, b) => records.lengths[b] - records.lengths[a] || a - b).length = MAX_LISTED_RECORDS;
  }
  const title = records.count > MAX_LISTED_RECORDS
    ? `All ${grouped(records.count)} (below: the longest)` : `All ${grouped(records.count)}`;
  select.append(new Option(title, 'all'));
  for (const record of longest) {
    if (records.lengths[record] > 0) select.append(new Option(cut(repeats.recordName(record), MAX_NAME_LENGTH), record));
  }
  select.addEventListener('change', () => {
    if (select.value === 'all') density.showAll();
    else density.showPlace(Number(select.value), 1, Infinity);
  });
  const moves = {
    in: () => density.zoom(0.5),
    out: () => density.zoom(2),
    left: () => density.pan(-0.5),
    right: () => density.pan(0.5),
    all: () => density.showAll(),
    list: () => listRange(density, repeats, list),
  };
  const form = byId('density-form');
  form.addEventListener('click', (event) => moves[event.target.dataset.do]?.());
  form.addEventListener('submit', (event) => {
    event.preventDefault();
    goToPlace(density, repeats, byId('density-place'));
  });
  const keys = { '+': 'in', '=': 'in', '-': 'out', ArrowLeft: 'left', ArrowRight: 'right', 0: 'all' };
  byId('density-chart').addEventListener('keydown', (event) => {
    if (!(event.key in keys) || event.ctrlKey || event.metaKey || event.altKey) return;
    moves[keys[event.key]]();
    event.preventDefault();
  });
  density.onRange = () => showRange(density, repeats, select);
  density.onRange();
}

/** Says in words what the chart shows. */
function showRange(density, repeats, select) {
  const { first, last, start, end } = density.range();
  const length = repeats.records.lengths[first];
  const isWhole = start === 1 && end === length;
  const nameOf = (record) => cut(repeats.recordName(record), MAX_NAME_LENGTH);
  const one = `${nameOf(first)}: ${grouped(start)}–${grouped(end)}`;
  const many = `${nameOf(first)} to ${nameOf(last)} (${grouped(last - first + 1)} records)`;
  byId('range').textContent = first === last ? one : many;
  document.querySelector('[data-do=list]').disabled = first !== last;
  byId('density-chart').setAttribute('aria-label', `Density of repeats in ${first === last ? one : many}`);
  const isAll = density.begin === 0 && density.end === density.windows.total;
  select.value = isAll && repeats.records.count > 1 ? 'all' : first === last && isWhole ? String(first) : '';
}

function goToPlace(density, repeats, field) {
  const place = findPlace(repeats, field.value);
  if (place && repeats.records.lengths[place.record] > 0) {
    density.showPlace(place.record, place.start, place.end);
    return;
  }
  field.setCustomValidity(place ? 'This record has no bases.' : 'No record has this name.');
  field.reportValidity();
  field.addEventListener('input', () => field.setCustomValidity(''), { once: true });
}

function listRange(density, repeats, list) {
  const { first, start, end } = density.range();
  list.ask({ record: `${repeats.recordName(first)}:${start}-${end}` });
}

async function start() {
  startTheme();
  byId('theme').addEventListener('click', switchTheme);
  byId('print').addEventListener('click', () => window.print());
  const data = await readTable();
  const repeats = new Repeats(data);
  repeats.detailsReady = readDetails(data.head.rows).then((details) => (repeats.details = details));
  const list = new RepeatList(repeats);
  drawOverview(data, repeats, list);
  startDensity(data, repeats, list);
  byId('state').hidden = true;
  document.documentElement.dataset.ready = 'yes';
  await repeats.detailsReady;
  document.documentElement.dataset.ready = 'all';
}

document.documentElement.dataset.theme = matchMedia('(prefers-color-scheme: dark)').matches ? 'dark' : 'light';
document.addEventListener('DOMContentLoaded', () => {
  start().catch((error) => {
    byId('state').textContent = typeof DecompressionStream === 'undefined'
      ? 'This browser is too old for the page: it cannot unpack gzip (DecompressionStream).'
      : `The page cannot be shown: ${error.message}`;
    throw error;
  });
});
