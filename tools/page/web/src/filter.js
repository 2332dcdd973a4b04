// Which repeats the table shows, and in which order.

const COMPLEMENT = { A: 'T', C: 'G', G: 'C', T: 'A', N: 'N' };

/** Returns the least rotation, in a number of steps that is proportional to the length. */
function leastRotation(unit) {
  // Two rotations are compared; of the one that is found larger, all are that begin in what has
  // matched.
  const { length } = unit;
  let [left, right, matched] = [0, 1, 0];
  while (left < length && right < length && matched < length) {
    const a = unit[(left + matched) % length];
    const b = unit[(right + matched) % length];
    if (a === b) {
      ++matched;
      continue;
    }
    if (a > b) left += matched + 1;
    else right += matched + 1;
    if (left === right) ++right;
    matched = 0;
  }
  const least = Math.min(left, right);
  return unit.slice(least) + unit.slice(0, least);
}

/** Returns the form that all rotations of a unit on either strand share. */
export function commonForm(unit) {
  const complement = [...unit].reverse().map((base) => COMPLEMENT[base] ?? base).join('');
  const [forward, backward] = [leastRotation(unit), leastRotation(complement)];
  return forward < backward ? forward : backward;
}

/**
 * Reads a place: the name of a record, alone or with a range of positions.
 * @param {import('./repeats.js').Repeats} repeats
 * @param {string} text such as "chrII", "chrII:1,200-5,000" or "chrII:1200"
 * @returns {{record: number, start: number, end: number}} with 1-based, closed positions, or null if
 *   no record has this name
 */
export function findPlace(repeats, text) {
  const whole = text.trim();
  const record = repeats.recordNamed(whole);
  if (record >= 0) return { record, start: 1, end: Infinity };
  const found = /^(.+):([\d,]+)(?:-([\d,]+))?$/.exec(whole);
  const named = found ? repeats.recordNamed(found[1]) : -1;
  if (named < 0) return null;
  const start = Number(found[2].replace(/,/g, ''));
  return { record: named, start, end: found[3] ? Number(found[3].replace(/,/g, '')) : start };
}

/** Returns a test of records for the text of the field Record: part of a name, or a place. */
function recordTest(repeats, text) {
  const { count } = repeats.records;
  const taken = new Uint8Array(count);
  const place = findPlace(repeats, text);
  if (place) {
    taken[place.record] = 1;
    return { taken, start: place.start, end: place.end };
  }
  const part = text.trim().toLowerCase();
  for (let i = 0; i < count; ++i) {
    if (repeats.recordName(i).toLowerCase().includes(part)) taken[i] = 1;
  }
  return { taken, start: 1, end: Infinity };
}

/** Returns which words are units of a motif, in any rotation and on either strand. */
function motifTest(repeats, text) {
  const motif = text.trim().toUpperCase().replace(/U/g, 'T');
  const form = commonForm(motif);
  const { begins } = repeats.words;
  const taken = new Uint8Array(begins.length - 1);
  for (let i = 0; i < taken.length; ++i) {
    if (begins[i + 1] - begins[i] !== motif.length) continue;
    taken[i] = commonForm(repeats.word(i)) === form ? 1 : 0;
  }
  return taken;
}

/**
 * Returns the rows that pass, in the order of the report.
 * @param {import('./repeats.js').Repeats} repeats
 * @param {object} wanted texts `record` and `motif`, and numbers `minUnit`, `maxUnit`, `minLength`,
 *   `minCopies`, `minScore`, `minPerfection`; what is undefined takes everything
 */
export function passingRows(repeats, wanted) {
  const { rows, words } = repeats;
  const record = wanted.record ? recordTest(repeats, wanted.record) : null;
  const motif = wanted.motif ? motifTest(repeats, wanted.motif) : null;
  const scale = repeats.head.decimals === 0 ? 1 : 1000;
  const minPerfection = wanted.minPerfection ?? 0;
  const { minUnit = 0, maxUnit = Infinity, minLength = 0, minCopies = 0, minScore = -Infinity } = wanted;
  const passing = new Uint32Array(rows.count);
  let count = 0;
  for (let i = 0; i < rows.count; ++i) {
    const unit = rows.unit[i];
    const unitLength = words.begins[unit + 1] - words.begins[unit];
    if (unitLength < minUnit || unitLength > maxUnit || rows.length[i] < minLength) continue;
    if (rows.score[i] < minScore) continue;
    // A repeat without a perfection passes only where none is asked for.
    if (minPerfection > 0 && !(rows.perfection[i] / scale >= minPerfection)) continue;
    if (rows.normalized[i] / unitLength < minCopies) continue;
    if (motif && !motif[unit]) continue;
    if (record) {
      if (!record.taken[rows.record[i]] || rows.start[i] > record.end) continue;
      if (rows.start[i] + rows.length[i] - 1 < record.start) continue;
    }
    passing[count++] = i;
  }
  return passing.subarray(0, count);
}

/** Returns the number that rows are sorted by in a column of the table. */
function sortNumber(repeats, column) {
  const { rows } = repeats;
  switch (column) {
    case 'end':
      return (row) => rows.start[row] + rows.length[row];
    case 'unit_length':
      return (row) => repeats.unitLength(row);
    case 'copies':
      return (row) => rows.normalized[row] / repeats.unitLength(row);
    case 'edits':
      return (row) => rows.mismatches[row] + rows.insertions[row] + rows.deletions[row];
    case 'perfection':
      return (row) => (Number.isNaN(rows.perfection[row]) ? -Infinity : rows.perfection[row]);
    default:
      return (row) => rows[column][row];
  }
}

/** Returns the place of each word or record in the order of the alphabet. */
function ranks(count, textOf) {
  const texts = Array.from({ length: count }, (_, i) => textOf(i));
  const order = texts.map((_, i) => i);
  order.sort((a, b) => (texts[a] < texts[b] ? -1 : texts[a] > texts[b] ? 1 : a - b));
  const rank = new Uint32Array(count);
  order.forEach((item, place) => (rank[item] = place));
  return rank;
}

/**
 * Sorts rows. Those that are equal stay in the order of the report.
 * @param {Uint32Array} passing what `passingRows` returns; it is changed
 * @param {string} column a column of the table
 * @param {boolean} isDescending the largest first
 */
export function sortRows(repeats, passing, column, isDescending) {
  const { rows } = repeats;
  let key;
  if (column === 'unit') {
    const rank = ranks(repeats.head.words, (i) => repeats.word(i));
    key = (row) => rank[rows.unit[row]];
  } else if (column === 'record') {
    const rank = ranks(repeats.records.count, (i) => repeats.recordName(i));
    key = (row) => rank[rows.record[row]];
  } else {
    key = sortNumber(repeats, column);
  }
  const keys = new Float64Array(rows.count);
  for (const row of passing) keys[row] = key(row);
  const sign = isDescending ? -1 : 1;
  return passing.sort((a, b) => (keys[a] === keys[b] ? a - b : sign * (keys[a] - keys[b])));
}
