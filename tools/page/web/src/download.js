// What is shown as BED and TSV, with the columns and bytes of `quorix-tools convert`.

const BED_HEAD =
  '#chrom\tstart\tend\tname\tscore\tstrand\tunit_length\tcopies\traw_score\tperfection\t' +
  'mismatches\tinsertions\tdeletions\tns\n';
const TSV_HEAD =
  'sequence\tstart\tend\tunit_length\tunit\tmotif\tcopies\tlength\tnormalized_length\tscore\t' +
  'perfection\tmismatches\tinsertions\tdeletions\tns\tedits\taligned_sequence\taligned_unit\n';

function counts(repeats, row) {
  return ['mismatches', 'insertions', 'deletions', 'ns'].map((name) => repeats.count(name, row));
}

function bedColumns(repeats, row) {
  const { rows } = repeats;
  const score = rows.score[row];
  return [
    rows.start[row] - 1, repeats.end(row), repeats.unit(row), Math.min(Math.max(score, 0), 1000), '.',
    repeats.unitLength(row), repeats.copies(row), score, repeats.perfection(row), ...counts(repeats, row),
  ];
}

function tsvColumns(repeats, row) {
  const { rows } = repeats;
  return [
    rows.start[row], repeats.end(row), repeats.unitLength(row), repeats.unit(row),
    repeats.motif(row) || '.', repeats.copies(row), rows.length[row], rows.normalized[row],
    rows.score[row], repeats.perfection(row), ...counts(repeats, row),
    repeats.detail('edits', row) || '.', repeats.bases(row) || '.', repeats.alignedUnit(row) || '.',
  ];
}

/** True if lines cannot begin with this identifier: it has a tab or, in BED, makes another line. */
function isRefused(name, format) {
  return name.includes('\t') || (format === 'bed' && /^(#|track|browser)/.test(name));
}

/**
 * Returns the rows as a file, and how many are missing since their records' names cannot stand in it.
 * Names keep their bytes, also those that are no UTF-8.
 * @param {Uint32Array} shown rows in the order of the file
 * @param {'bed'|'tsv'} format
 * @returns {{blob: Blob, refused: number}}
 */
export function makeFile(repeats, shown, format) {
  const columns = format === 'bed' ? bedColumns : tsvColumns;
  const parts = [format === 'bed' ? BED_HEAD : TSV_HEAD];
  let refused = 0;
  let text = '';
  for (const row of shown) {
    const record = repeats.rows.record[row];
    const name = repeats.recordName(record);
    if (isRefused(name, format)) {
      ++refused;
      continue;
    }
    if (name.includes('\uFFFD')) {
      parts.push(text, repeats.recordBytes(record));
      text = '';
    } else {
      text += name;
    }
    text += `\t${columns(repeats, row).join('\t')}\n`;
    if (text.length > 1 << 20) {
      parts.push(text);
      text = '';
    }
  }
  parts.push(text);
  return { blob: new Blob(parts, { type: 'text/plain' }), refused };
}

/** Hands a file to the browser's downloads. */
export function save(blob, name) {
  const link = document.createElement('a');
  link.href = URL.createObjectURL(blob);
  link.download = name;
  document.body.append(link);
  link.click();
  link.remove();
  setTimeout(() => URL.revokeObjectURL(link.href), 60000);
}
