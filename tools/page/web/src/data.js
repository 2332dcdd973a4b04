// Reads the data that the page carries: two texts of gzip in base64. The layout is described in
// page_writer.cpp.

/** Steps through unpacked bytes, from column to column. */
class ByteReader {
  constructor(bytes) {
    this.bytes = bytes;
    this.place = 0;
  }

  /** Returns the next number: seven bits a byte, low ones first, the sign in the lowest. */
  number() {
    const { bytes } = this;
    let byte = bytes[this.place++];
    if (byte < 0x80) return byte & 1 ? -(byte + 1) / 2 : byte / 2;
    // Sums instead of shifts, since numbers may have more than 32 bits.
    let value = byte & 0x7f;
    let factor = 0x80;
    do {
      byte = bytes[this.place++];
      value += (byte & 0x7f) * factor;
      factor *= 0x80;
    } while (byte >= 0x80);
    return value % 2 ? -(value + 1) / 2 : value / 2;
  }

  /** Returns the next `count` numbers. */
  numbers(count, ArrayType = Float64Array) {
    const column = new ArrayType(count);
    for (let i = 0; i < count; ++i) column[i] = this.number();
    return column;
  }

  /** Returns the next `length` bytes, without a copy. */
  take(length) {
    this.place += length;
    return this.bytes.subarray(this.place - length, this.place);
  }

  /** Returns texts of these lengths: all their bytes, and where each begins and ends. */
  texts(lengths) {
    const begins = new Float64Array(lengths.length + 1);
    for (let i = 0; i < lengths.length; ++i) begins[i + 1] = begins[i] + Math.max(lengths[i], 0);
    return { begins, bytes: this.take(begins[lengths.length]) };
  }
}

/** Returns the bytes of text number `i` of a `texts` column. */
export function bytesOf(column, i) {
  return column.bytes.subarray(column.begins[i], column.begins[i + 1]);
}

const decoder = new TextDecoder('utf-8', { ignoreBOM: true });

/** Returns text number `i`; bytes that are no UTF-8 are shown as replacement characters. */
export function textOf(column, i) {
  return decoder.decode(bytesOf(column, i));
}

/** Returns the bytes that an element of the page carries. */
async function unpack(id) {
  const letters = atob(document.getElementById(id).textContent.trim());
  const packed = new Uint8Array(letters.length);
  for (let i = 0; i < letters.length; ++i) packed[i] = letters.charCodeAt(i);
  const stream = new Blob([packed]).stream().pipeThrough(new DecompressionStream('gzip'));
  return new Uint8Array(await new Response(stream).arrayBuffer());
}

function readRecords(reader, count) {
  const lengths = reader.numbers(count);
  return {
    count,
    names: reader.texts(lengths),
    lengths: reader.numbers(count),
    repeats: reader.numbers(count),
    bases: reader.numbers(count),
    rows: reader.numbers(count),
    complete: reader.numbers(count, Uint8Array),
  };
}

/** Returns the record of each row, and makes the starts what they are from differences. */
function placeRows(records, starts) {
  const recordOf = new Uint32Array(starts.length);
  let row = 0;
  for (let record = 0; record < records.count; ++record) {
    const end = row + records.rows[record];
    for (let start = 0; row < end; ++row) {
      start += starts[row];
      starts[row] = start;
      recordOf[row] = record;
    }
  }
  return recordOf;
}

function readRows(reader, count, records) {
  const start = reader.numbers(count);
  const length = reader.numbers(count);
  const normalized = reader.numbers(count);
  for (let i = 0; i < count; ++i) normalized[i] += length[i];
  return {
    count,
    record: placeRows(records, start),
    start,
    length,
    normalized,
    score: reader.numbers(count),
    mismatches: reader.numbers(count),
    insertions: reader.numbers(count),
    deletions: reader.numbers(count),
    ns: reader.numbers(count),
    perfection: reader.numbers(count).map((value) => (value % 2 ? NaN : value / 2)),
    unit: reader.numbers(count, Uint32Array),
    motif: reader.numbers(count, Uint32Array),
  };
}

/**
 * Reads what is shown first.
 * @returns {Promise<object>} `head` (see page_head.cpp), `records`, `windows` (bases in repeats),
 *   `words` (units and motifs), and `rows`, a column for each figure of a repeat.
 */
export async function readTable() {
  const reader = new ByteReader(await unpack('table-data'));
  const head = JSON.parse(decoder.decode(reader.take(reader.number())));
  const records = readRecords(reader, head.total.records);
  let windowCount = 0;
  for (const length of records.lengths) windowCount += Math.ceil(length / head.window);
  const windows = reader.numbers(windowCount);
  const words = reader.texts(reader.numbers(head.words));
  return { head, records, windows, words, rows: readRows(reader, head.rows, records) };
}

/**
 * Reads bases, alignments, edits and flanks.
 * @param {number} count the number of rows
 * @returns {Promise<object>} columns of texts, and `leftOut`, 1 for rows without details
 */
export async function readDetails(count) {
  const reader = new ByteReader(await unpack('detail-data'));
  const lengths = [];
  for (let column = 0; column < 5; ++column) lengths.push(reader.numbers(count));
  const [bases, copies, edits, left, right] = lengths.map((column) => reader.texts(column));
  return { leftOut: Uint8Array.from(lengths[0], (n) => (n < 0 ? 1 : 0)), bases, copies, edits, left, right };
}
