// What a row of the table says, as texts: for the table, the details and the downloads.

import { bytesOf, textOf } from './data.js';

const letters = new TextDecoder('latin1');

/** Returns a number with commas between groups of three digits. */
export function grouped(number) {
  return String(number).replace(/\B(?=(\d{3})+(?!\d))/g, ',');
}

/** Returns a text of up to `length` characters, with an ellipsis where it is cut. */
export function cut(text, length) {
  return text.length > length ? `${text.slice(0, length - 1)}…` : text;
}

/** The figures of the repeats as texts. Nothing is computed before it is asked for. */
export class Repeats {
  /** @param {object} data what `readTable` returns */
  constructor(data) {
    this.head = data.head;
    this.records = data.records;
    this.words = data.words;
    this.rows = data.rows;
    this.names = new Map();
    this.details = null;
  }

  /** Returns the identifier of a record as text. */
  recordName(record) {
    let name = this.names.get(record);
    if (name === undefined) {
      name = textOf(this.records.names, record);
      this.names.set(record, name);
    }
    return name;
  }

  /** Returns the number of the record with this identifier, -1 if there is none. */
  recordNamed(name) {
    if (!this.numbers) {
      this.numbers = new Map();
      for (let i = 0; i < this.records.count; ++i) this.numbers.set(this.recordName(i), i);
    }
    return this.numbers.get(name) ?? -1;
  }

  /**
   * Returns the rows of a record that have bases in a range, or none if there are more than
   * `maxCount`.
   */
  rowsIn(record, start, end, maxCount) {
    const { rows, records } = this;
    let row = 0;
    for (let i = 0; i < record; ++i) row += records.rows[i];
    const found = [];
    for (const stop = row + records.rows[record]; row < stop && rows.start[row] <= end; ++row) {
      if (this.end(row) < start) continue;
      if (found.length === maxCount) return [];
      found.push(row);
    }
    return found;
  }

  recordBytes(record) {
    return bytesOf(this.records.names, record);
  }

  word(number) {
    return letters.decode(bytesOf(this.words, number));
  }

  unit(row) {
    return this.word(this.rows.unit[row]);
  }

  /** Returns the number of bases of the unit. */
  unitLength(row) {
    const number = this.rows.unit[row];
    return this.words.begins[number + 1] - this.words.begins[number];
  }

  /** Returns the unit on the forward strand from the first base on, or '' if that is not known. */
  motif(row) {
    const number = this.rows.motif[row];
    return number === 0 ? '' : this.word(number - 1);
  }

  end(row) {
    return this.rows.start[row] + this.rows.length[row] - 1;
  }

  /** Returns the copies with two decimals; halves are rounded up. */
  copies(row) {
    const unitLength = this.unitLength(row);
    const normalized = this.rows.normalized[row];
    const whole = Math.floor(normalized / unitLength);
    const rest = normalized % unitLength;
    const hundredths = Math.floor((rest * 200 + unitLength) / (2 * unitLength));
    return `${whole + Math.floor(hundredths / 100)}.${String(hundredths % 100).padStart(2, '0')}`;
  }

  /** Returns the perfection in percent as the report prints it, or '.' if it has none. */
  perfection(row) {
    const digits = this.rows.perfection[row];
    if (Number.isNaN(digits)) return '.';
    if (this.head.decimals === 0) return String(digits);
    const thousandths = String(Math.abs(digits)).padStart(4, '0');
    return `${digits < 0 ? '-' : ''}${thousandths.slice(0, -3)}.${thousandths.slice(-3)}`;
  }

  /** Returns a count, or '.' if the report does not tell it. */
  count(column, row) {
    const value = this.rows[column][row];
    return value < 0 ? '.' : String(value);
  }

  /** Returns a text of the details, '' if there is none. */
  detail(column, row) {
    return letters.decode(bytesOf(this.details[column], row));
  }

  isLeftOut(row) {
    return this.details.leftOut[row] === 1;
  }

  /** Returns the bases as printed, with '-' for deletions if there is an alignment. */
  bases(row) {
    return this.detail('bases', row).toUpperCase().replace(/X/g, 'N');
  }

  /** Returns the line of the unit in the alignment, '' if there is none. */
  alignedUnit(row) {
    if (this.head.bases !== 'alignment') return '';
    const coded = this.detail('bases', row);
    const unit = this.motif(row) || this.detail('copies', row);
    let line = '';
    let place = 0;
    for (const base of coded) {
      if (base >= 'a' && base !== 'x') {
        line += '-';
      } else {
        line += unit[place];
        place = place + 1 === unit.length ? 0 : place + 1;
      }
    }
    return line;
  }

  /**
   * Returns what each column of the alignment shows, a letter each: '=' for a match, 'M', 'I', 'D',
   * and 'N' for an unknown base that counts as none of them.
   */
  kinds(row) {
    const coded = this.detail('bases', row);
    const unit = this.alignedUnit(row);
    let kinds = '';
    for (let i = 0; i < coded.length; ++i) {
      const base = coded[i];
      if (base === '-') kinds += 'D';
      else if (base === 'N') kinds += 'N';
      else if (unit[i] === '-') kinds += 'I';
      else kinds += base === unit[i] ? '=' : 'M';
    }
    return kinds;
  }
}
