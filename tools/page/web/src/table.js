// The table of repeats. Only the rows that are in sight are elements of the page.

import { cut, grouped } from './repeats.js';

const ROW_HEIGHT = 32;
const ROWS_BEYOND = 8;
const ROOM_FOR_EDGES = 20; // borders and a scroll bar, in pixels

/** The columns: key for sorting, title, explanation, and text of a row. */
const COLUMNS = [
  ['record', 'Record', 'Identifier of the record', (repeats, row) => repeats.recordName(repeats.rows.record[row])],
  ['start', 'Start', 'First base, counted from 1', (repeats, row) => grouped(repeats.rows.start[row])],
  ['end', 'End', 'Last base, which belongs to the repeat', (repeats, row) => grouped(repeats.end(row))],
  ['unit_length', 'Unit bp', 'Bases of the unit', (repeats, row) => String(repeats.unitLength(row))],
  ['unit', 'Unit', 'The unit as the report prints it', (repeats, row) => repeats.unit(row)],
  ['copies', 'Copies', 'Normalized length / unit length', (repeats, row) => repeats.copies(row)],
  ['length', 'Length', 'Bases of the repeat', (repeats, row) => grouped(repeats.rows.length[row])],
  ['score', 'Score', 'Score of the repeat', (repeats, row) => grouped(repeats.rows.score[row])],
  ['perfection', 'Perfection', 'Matching part in percent', (repeats, row) => repeats.perfection(row)],
  ['edits', 'Edits', 'Mismatches, insertions and deletions', editText],
];

function editText(repeats, row) {
  const { mismatches, insertions, deletions } = repeats.rows;
  return mismatches[row] < 0 ? '.' : grouped(mismatches[row] + insertions[row] + deletions[row]);
}

function element(tag, className, role) {
  const made = document.createElement(tag);
  made.className = className;
  if (role) made.setAttribute('role', role);
  return made;
}

/** A grid with one tab stop for its rows: arrow keys move in it, Enter opens a repeat. */
export class Table {
  /**
   * @param {HTMLElement} place where the table goes
   * @param {import('./repeats.js').Repeats} repeats
   * @param {{open: function(number), sort: function(string)}} calls what a row and a title do; a row
   *   is given by its place among those that are shown
   */
  constructor(place, repeats, calls) {
    this.repeats = repeats;
    this.calls = calls;
    this.shown = new Uint32Array(0);
    this.active = 0;
    this.lines = [];
    this.grid = place;
    place.setAttribute('aria-colcount', COLUMNS.length);
    place.append(this.makeHead());
    this.body = element('div', 'table-body', 'rowgroup');
    place.append(this.body);
    place.addEventListener('scroll', () => this.draw(), { passive: true });
    place.addEventListener('keydown', (event) => this.onKey(event));
    place.addEventListener('focus', () => this.draw());
    place.addEventListener('blur', () => this.draw());
    new ResizeObserver(() => this.draw()).observe(place);
  }

  makeHead() {
    const head = element('div', 'table-head', 'rowgroup');
    const line = element('div', 'table-row', 'row');
    line.setAttribute('aria-rowindex', 1);
    this.titles = COLUMNS.map(([key, title, explanation]) => {
      const cell = element('div', `cell cell-${key}`, 'columnheader');
      const button = document.createElement('button');
      button.type = 'button';
      button.textContent = title;
      button.title = `${explanation}. Sorts by it.`;
      button.addEventListener('click', () => this.calls.sort(key));
      cell.append(button);
      line.append(cell);
      return cell;
    });
    head.append(line);
    return head;
  }

  makeLine() {
    const line = element('div', 'table-row', 'row');
    line.cells = COLUMNS.map(([key]) => {
      const cell = element('div', `cell cell-${key}`, 'gridcell');
      line.append(cell);
      return cell;
    });
    line.addEventListener('click', () => {
      this.active = line.place;
      this.draw();
      this.calls.open(line.place);
    });
    this.body.append(line);
    return line;
  }

  /** Shows these rows, and which column they are sorted by. */
  show(shown, column, isDescending) {
    this.shown = shown;
    this.active = 0;
    this.grid.scrollTop = 0;
    this.body.style.height = `${shown.length * ROW_HEIGHT}px`;
    this.grid.style.maxHeight = `${(shown.length + 1) * ROW_HEIGHT + ROOM_FOR_EDGES}px`;
    this.grid.setAttribute('aria-rowcount', shown.length + 1);
    this.titles.forEach((title, i) => {
      const order = COLUMNS[i][0] === column ? (isDescending ? 'descending' : 'ascending') : 'none';
      title.setAttribute('aria-sort', order);
    });
    for (const line of this.lines) line.place = -1;
    this.draw();
  }

  draw() {
    const first = Math.max(0, Math.floor(this.grid.scrollTop / ROW_HEIGHT) - ROWS_BEYOND);
    const inSight = Math.ceil(this.grid.clientHeight / ROW_HEIGHT) + 2 * ROWS_BEYOND;
    const last = Math.min(this.shown.length, first + inSight);
    while (this.lines.length < last - first) this.lines.push(this.makeLine());
    const count = this.lines.length;
    for (let i = 0; i < count; ++i) {
      // A row keeps its element while it is in sight.
      const place = count === 0 ? 0 : first + ((((i - first) % count) + count) % count);
      this.fill(this.lines[i], place < last ? place : -1);
    }
    const isSeen = this.active >= first && this.active < last;
    if (isSeen) this.grid.setAttribute('aria-activedescendant', `row-${this.active}`);
    else this.grid.removeAttribute('aria-activedescendant');
  }

  fill(line, place) {
    line.hidden = place < 0;
    if (place < 0) {
      line.place = -1;
      return;
    }
    const isActive = place === this.active;
    line.classList.toggle('active', isActive);
    line.setAttribute('aria-selected', isActive);
    if (line.place === place) return;
    line.place = place;
    line.id = `row-${place}`;
    line.style.top = `${place * ROW_HEIGHT}px`;
    line.classList.toggle('odd', place % 2 === 1);
    line.setAttribute('aria-rowindex', place + 2);
    const row = this.shown[place];
    COLUMNS.forEach(([, , , text], i) => {
      line.cells[i].textContent = cut(text(this.repeats, row), 200);
    });
  }

  /** Makes a row the active one and brings it into sight. */
  go(place) {
    this.active = Math.min(Math.max(place, 0), this.shown.length - 1);
    const headHeight = this.grid.firstChild.offsetHeight;
    const top = this.active * ROW_HEIGHT;
    const room = this.grid.clientHeight - headHeight - ROW_HEIGHT;
    if (top < this.grid.scrollTop) this.grid.scrollTop = top;
    else if (top > this.grid.scrollTop + room) this.grid.scrollTop = top - room;
    this.draw();
  }

  onKey(event) {
    if (event.target !== this.grid || this.shown.length === 0) return;
    const page = Math.max(1, Math.floor(this.grid.clientHeight / ROW_HEIGHT) - 2);
    const moves = {
      ArrowDown: this.active + 1,
      ArrowUp: this.active - 1,
      PageDown: this.active + page,
      PageUp: this.active - page,
      Home: 0,
      End: this.shown.length - 1,
    };
    if (event.key in moves) this.go(moves[event.key]);
    else if (event.key === 'Enter' || event.key === ' ') this.calls.open(this.active);
    else return;
    event.preventDefault();
  }
}
