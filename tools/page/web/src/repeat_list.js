// The list of repeats: its fields, its order, and what it saves.

import { Details } from './details.js';
import { makeFile, save } from './download.js';
import { passingRows, sortRows } from './filter.js';
import { grouped } from './repeats.js';
import { Table } from './table.js';

const byId = (id) => document.getElementById(id);

/** Columns that are sorted from the least on at first. */
const ASCENDING = ['record', 'start', 'end', 'unit'];

/** The state of the list of repeats: what the fields ask for, and the order. */
export class RepeatList {
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
    const whole = head.filters === '' ? 'in the report' : 'that pass';
    const all = head.rows === head.total.repeats ? '' : ` listed, of ${grouped(head.total.repeats)} ${whole}`;
    const fault = this.form.checkValidity() ? '' : ' (a field that is not valid is left out)';
    byId('count').textContent = `${grouped(this.shown.length)} of ${grouped(head.rows)} repeats${all}${fault}`;
    byId('save-note').textContent = '';
    byId('nothing').hidden = this.shown.length > 0;
  }

  sort(column) {
    this.isDescending = this.column === column ? !this.isDescending : !ASCENDING.includes(column);
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
