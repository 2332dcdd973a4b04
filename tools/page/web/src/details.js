// A repeat with all its figures and its alignment, in a dialog.

import { grouped } from './repeats.js';

/** Marks and names of what a column of an alignment shows. */
const KINDS = {
  '=': ['|', 'match'],
  M: ['×', 'mismatch'],
  I: ['+', 'insertion'],
  D: ['−', 'deletion'],
  N: ['?', 'unknown'],
};

const GROUP = 10;
const MIN_COLUMNS = 20;
const MIN_COLUMNS_WITH_ENDS = 40;
const MAX_COLUMNS = 80;

function add(parent, tag, text, className) {
  const child = document.createElement(tag);
  if (text !== undefined) child.textContent = text;
  if (className) child.className = className;
  parent.append(child);
  return child;
}

/** Appends a piece of a line, a span for each stretch of columns that show the same. */
function addStretches(line, text, kinds) {
  for (let begin = 0; begin < text.length; ) {
    let end = begin + 1;
    while (end < text.length && kinds[end] === kinds[begin]) ++end;
    const piece = text.slice(begin, end);
    if (kinds[begin] === '=') line.append(piece);
    else add(line, 'span', piece, `edit ${KINDS[kinds[begin]][1]}`);
    begin = end;
  }
}

/** The dialog. Arrow keys go to the repeats before and after, Escape closes it. */
export class Details {
  /** @param {HTMLDialogElement} dialog */
  constructor(dialog, repeats) {
    this.dialog = dialog;
    this.repeats = repeats;
    this.title = dialog.querySelector('h2');
    this.figures = dialog.querySelector('dl');
    this.alignment = dialog.querySelector('.alignment');
    this.legend = dialog.querySelector('.legend');
    this.onMove = () => {};
    dialog.querySelector('[data-do=before]').addEventListener('click', () => this.move(-1));
    dialog.querySelector('[data-do=after]').addEventListener('click', () => this.move(1));
    dialog.querySelector('[data-do=close]').addEventListener('click', () => dialog.close());
    dialog.addEventListener('click', (event) => event.target === dialog && dialog.close());
    dialog.addEventListener('keydown', (event) => {
      if (event.key === 'ArrowLeft') this.move(-1);
      else if (event.key === 'ArrowRight') this.move(1);
    });
    for (const [kind, [mark, name]] of Object.entries(KINDS)) {
      if (kind !== '=') add(this.legend, 'span', `${mark} ${name}`, `edit ${name}`);
    }
  }

  /** Opens the repeat at a place among the shown ones. */
  open(shown, place) {
    this.shown = shown;
    this.place = place;
    if (!this.dialog.open) this.dialog.showModal();
    this.fill();
  }

  move(step) {
    const place = this.place + step;
    if (place < 0 || place >= this.shown.length) return;
    this.place = place;
    this.fill();
    // A button that has just become useless would take the keys along.
    if (document.activeElement.disabled || !this.dialog.contains(document.activeElement)) {
      this.dialog.querySelector('[data-do=close]').focus();
    }
    this.onMove(place);
  }

  fill() {
    const { repeats } = this;
    const row = this.shown[this.place];
    const name = repeats.recordName(repeats.rows.record[row]);
    const range = `${grouped(repeats.rows.start[row])}–${grouped(repeats.end(row))}`;
    this.title.textContent = `${name}: ${range}`;
    this.dialog.querySelector('[data-do=before]').disabled = this.place === 0;
    this.dialog.querySelector('[data-do=after]').disabled = this.place + 1 === this.shown.length;
    this.dialog.querySelector('.place').textContent =
      `${grouped(this.place + 1)} of ${grouped(this.shown.length)}`;
    this.fillFigures(row);
    this.fillAlignment(row);
    this.dialog.scrollTop = 0;
  }

  fillFigures(row) {
    const { repeats } = this;
    const figures = [
      ['Unit', repeats.unit(row)],
      ['Motif on the forward strand', repeats.motif(row) || 'not told'],
      ['Unit length', `${repeats.unitLength(row)} bp`],
      ['Copies', repeats.copies(row)],
      ['Length', `${grouped(repeats.rows.length[row])} bp`],
      ['Normalized length', grouped(repeats.rows.normalized[row])],
      ['Score', grouped(repeats.rows.score[row])],
      ['Perfection', repeats.perfection(row) === '.' ? 'none' : `${repeats.perfection(row)} %`],
    ];
    for (const [title, column] of [['Mismatches', 'mismatches'], ['Insertions', 'insertions'],
      ['Deletions', 'deletions'], ['Unknown bases', 'ns']]) {
      const count = repeats.count(column, row);
      if (count !== '.') figures.push([title, count]);
    }
    this.figures.replaceChildren();
    for (const [title, value] of figures) {
      const group = add(this.figures, 'div');
      add(group, 'dt', title);
      add(group, 'dd', value, /^(Unit|Motif on.*)$/.test(title) ? 'letters' : '');
    }
  }

  fillAlignment(row) {
    const { repeats } = this;
    this.alignment.replaceChildren();
    this.legend.hidden = true;
    if (repeats.head.bases === 'none') {
      add(this.alignment, 'p', 'This report has neither bases nor alignments.', 'note');
    } else if (!repeats.details) {
      add(this.alignment, 'p', 'The alignments are still being unpacked.', 'note');
    } else if (repeats.isLeftOut(row)) {
      add(this.alignment, 'p', 'The alignment is left out: the page has no room for the longest ones.', 'note');
    } else {
      this.addBlocks(row);
    }
  }

  addBlocks(row) {
    const { repeats } = this;
    const bases = repeats.bases(row);
    const unit = repeats.alignedUnit(row);
    const kinds = unit ? repeats.kinds(row) : '='.repeat(bases.length);
    if (!unit) add(this.alignment, 'p', 'This report has bases, but no alignments.', 'note');
    this.legend.hidden = !/[^=]/.test(kinds);
    const left = repeats.detail('left', row);
    const right = repeats.detail('right', row);
    if (left) add(this.alignment, 'p', `Before it: ${left}`, 'flank');

    const { width, hasEnds } = this.lineForm();
    let position = repeats.rows.start[row];
    const digits = String(repeats.end(row)).length;
    for (let begin = 0; begin < bases.length; begin += width) {
      const piece = bases.slice(begin, begin + width);
      const pieceKinds = kinds.slice(begin, begin + width);
      const count = piece.replace(/-/g, '').length;
      const block = add(this.alignment, 'pre');
      const first = String(count > 0 ? position : position - 1).padStart(digits);
      const indent = ' '.repeat(digits + 2);
      block.append(`${first}  `);
      addStretches(block, piece, pieceKinds);
      position += count;
      if (hasEnds) block.append(`  ${position - 1}`);
      if (!unit) continue;
      block.append(`\n${indent}`);
      addStretches(block, [...pieceKinds].map((kind) => KINDS[kind][0]).join(''), pieceKinds);
      block.append(`\n${indent}`);
      addStretches(block, unit.slice(begin, begin + width), pieceKinds);
    }
    if (right) add(this.alignment, 'p', `After it: ${right}`, 'flank');
  }

  /** Returns how many columns of an alignment fit side by side, and whether their end does too. */
  lineForm() {
    const probe = add(this.alignment, 'pre', '0'.repeat(100), 'probe');
    const letter = probe.getBoundingClientRect().width / 100;
    const digits = String(this.repeats.end(this.shown[this.place])).length;
    const room = Math.floor(this.alignment.clientWidth / letter) - digits - 3;
    probe.remove();
    const hasEnds = room - digits - 2 >= MIN_COLUMNS_WITH_ENDS;
    const columns = hasEnds ? room - digits - 2 : room;
    const width = Math.min(Math.max(Math.floor(columns / GROUP) * GROUP, MIN_COLUMNS), MAX_COLUMNS);
    return { width, hasEnds };
  }
}
