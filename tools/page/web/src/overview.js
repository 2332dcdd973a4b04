// Totals, the four bar charts with their tables, and the settings.

import { drawBars, repeatText, setLogarithmic } from './charts.js';
import { cut, grouped } from './repeats.js';

const byId = (id) => document.getElementById(id);

const MAX_BARS = 60;
const SHOWN_UNITS = 15;
const MAX_TABLE_ROWS = 2000;
const PERCENT = (share) => `${Number((share * 100).toPrecision(4))} %`;

function addPair(list, title, value) {
  const group = document.createElement('div');
  const name = document.createElement('dt');
  const content = document.createElement('dd');
  name.textContent = title;
  content.textContent = value;
  group.append(name, content);
  list.append(group);
}

/** Fills a table: titles, and lines of texts, which may be the first of `rowCount`. */
function fillTable(table, titles, rows, rowCount = rows.length) {
  const head = table.createTHead().insertRow();
  for (const title of titles) {
    const cell = document.createElement('th');
    cell.scope = 'col';
    cell.textContent = title;
    head.append(cell);
  }
  const body = table.createTBody();
  for (const row of rows.slice(0, MAX_TABLE_ROWS)) {
    const line = body.insertRow();
    for (const text of row) line.insertCell().textContent = text;
  }
  if (rowCount > MAX_TABLE_ROWS) {
    const caption = table.createCaption();
    caption.textContent = `The first ${grouped(MAX_TABLE_ROWS)} of ${grouped(rowCount)}.`;
  }
}

/** Draws bars, or says that there is nothing to draw. */
function drawOr(place, items, more, description) {
  if (items.length === 0) {
    place.textContent = 'There are no repeats.';
    place.classList.add('none');
    place.parentElement.querySelector('details').hidden = true;
    return;
  }
  drawBars(place, items, more);
  place.setAttribute('aria-label', description);
}

const FIGURES = ['Repeats', 'Bases', 'Share', 'Copies', 'Mean perfection'];

function figures(group) {
  return [grouped(group.repeats), grouped(group.bases), PERCENT(group.share), group.copies.toFixed(2),
    group.perfection === undefined ? '.' : `${group.perfection.toFixed(3)} %`];
}

function drawUnitLengths(head, list) {
  const groups = head.unit_lengths;
  // Many unit lengths share bars of one width.
  const min = groups[0]?.unit_length ?? 1;
  const max = groups.at(-1)?.unit_length ?? 0;
  const step = Math.ceil((max - min + 1) / MAX_BARS);
  const items = [];
  for (let from = min; from <= max; from += step) {
    const to = from + step - 1;
    items.push({ from, to, count: 0, label: step === 1 ? String(from) : `${from}–${to}` });
  }
  for (const group of groups) items[Math.floor((group.unit_length - min) / step)].count += group.repeats;
  for (const item of items) item.lines = [`Units of ${item.label} bp`, repeatText(item.count)];
  drawOr(byId('unit-length-chart'), items, {
    name: 'Unit length (bp)',
    pick: (i) => list.ask({ minUnit: items[i].from, maxUnit: items[i].to }),
  }, `Repeats of ${groups.length} unit lengths, from ${min} to ${max} bp`);
  fillTable(byId('unit-length-table'), ['Unit length', ...FIGURES],
    groups.map((group) => [String(group.unit_length), ...figures(group)]));
}

function drawUnits(head, list) {
  const items = head.units.slice(0, SHOWN_UNITS).map((group) => ({
    label: cut(group.unit, 14),
    count: group.repeats,
    lines: [cut(group.unit, 60), repeatText(group.repeats), `${grouped(group.bases)} bp, ${PERCENT(group.share)}`],
  }));
  drawOr(byId('unit-chart'), items, {
    name: 'Unit',
    isFlat: true,
    pick: (i) => list.ask({ motif: head.units[i].unit }),
  }, `The ${items.length} commonest of ${head.total.units} units; first ${items[0]?.label}`);
  fillTable(byId('unit-table'), ['Unit', ...FIGURES],
    head.units.map((group) => [cut(group.unit, 100), ...figures(group)]));
}

function drawLengths({ length_bounds: bounds, length_counts: counts }, list) {
  const first = counts.findIndex((count) => count > 0);
  const items = [];
  for (let i = Math.max(first, 0); i < counts.length; ++i) {
    const [from, to] = [bounds[i], bounds[i + 1] - 1];
    const label = from === to ? grouped(from) : `${grouped(from)}–${grouped(to)}`;
    items.push({ from, label, count: counts[i], lines: [`${label} bp`, repeatText(counts[i])] });
  }
  drawOr(byId('length-chart'), items, {
    name: 'Length (bp), ten classes from a power of ten to the next',
    pick: (i) => list.ask({ minLength: items[i].from }),
  }, 'Repeats by their lengths');
  fillTable(byId('length-table'), ['Length (bp)', 'Repeats'],
    items.map((item) => [item.label, grouped(item.count)]));
}

function drawPerfections({ perfection_counts: counts, without_perfection: without }, list) {
  const first = counts.findIndex((count) => count > 0);
  const items = [];
  for (let i = first < 0 ? counts.length : first; i < counts.length; ++i) {
    const label = i === 100 ? '100' : `${i}–${i + 1}`;
    const range = i === 100 ? '100 %' : `${i} % to less than ${i + 1} %`;
    items.push({ from: i, label, count: counts[i], lines: [range, repeatText(counts[i])] });
  }
  drawOr(byId('perfection-chart'), items, {
    name: 'Perfection (%)',
    pick: (i) => list.ask({ minPerfection: items[i].from }),
  }, 'Repeats by their perfection');
  const rows = items.map((item) => [item.label, grouped(item.count)]);
  if (without > 0) rows.push(['none', grouped(without)]);
  fillTable(byId('perfection-table'), ['Perfection (%)', 'Repeats'], rows);
}

function addNote(text) {
  const note = document.createElement('p');
  note.className = 'notice';
  note.textContent = text;
  byId('notes').append(note);
}

/** Says what is not on the page. */
function drawNotes(head) {
  if (head.filters !== '') {
    addNote(`Only repeats that pass ${head.filters}. Totals, charts and density are of these.`);
  }
  if (head.stride > 1) {
    addNote(`There are more repeats than a page can list. The table holds ${grouped(head.rows)} of ` +
      `${grouped(head.total.repeats)}, one in ${grouped(head.stride)} in the order of the report. ` +
      'Totals, charts and density are of all.');
  }
  if (head.left_out > 0) {
    addNote(`The longest alignments, ${grouped(head.left_out)} of ${grouped(head.rows)}, are left out for space.`);
  }
  if (!head.complete) addNote('The report is cut short. What came after is missing here.');
}

/**
 * Draws everything above the density, the table of records, and the settings.
 * @param {object} data what `readTable` returns
 * @param {object} list has `ask`, which a click on a bar calls
 */
export function drawOverview({ head, records }, repeats, list) {
  const { total } = head;
  document.title = `Tandem repeats of ${cut(head.input, 80)}`;
  byId('input').textContent = `in ${head.input}`;
  for (const [title, value] of [['Records', grouped(total.records)], ['Bases searched', grouped(total.length)],
    ['Repeats', grouped(total.repeats)], ['Bases in repeats', grouped(total.bases)],
    ['Share in repeats', PERCENT(total.share)], ['Different units', grouped(total.units)]]) {
    addPair(byId('totals'), title, value);
  }
  drawNotes(head);
  drawUnitLengths(head, list);
  drawUnits(head, list);
  drawLengths(head.distributions, list);
  drawPerfections(head.distributions, list);
  const box = byId('logarithmic');
  box.addEventListener('change', () => setLogarithmic(box.checked));
  box.closest('p').hidden = total.repeats === 0;
  drawRecords(records, repeats);
  for (const [title, value] of head.settings) addPair(byId('setting-list'), title, value);
}

function drawRecords(records, repeats) {
  const lines = [];
  for (let i = 0; i < Math.min(records.count, MAX_TABLE_ROWS + 1); ++i) {
    const share = records.lengths[i] > 0 ? records.bases[i] / records.lengths[i] : 0;
    lines.push([cut(repeats.recordName(i), 100), grouped(records.lengths[i]), grouped(records.repeats[i]),
      grouped(records.bases[i]), PERCENT(share)]);
  }
  fillTable(byId('record-table'), ['Record', 'Length', 'Repeats', 'Bases in repeats', 'Share'], lines, records.count);
}
