// The fields, buttons and keys of the density.

import { Density } from './density.js';
import { findPlace } from './filter.js';
import { cut, grouped } from './repeats.js';

const byId = (id) => document.getElementById(id);

const MAX_LISTED_RECORDS = 2000;
const MAX_NAME_LENGTH = 80;

/**
 * Draws the density, and connects its fields and keys with the chart.
 * @param {object} data what `readTable` returns
 * @param {object} list has `ask`, which shows the repeats of a place
 */
export function startDensity(data, repeats, list) {
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
  // Shown where the range is neither; it cannot be chosen.
  const part = new Option('a part, see below', '');
  part.hidden = true;
  select.append(part);
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
