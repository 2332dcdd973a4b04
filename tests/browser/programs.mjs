// Runs of the two programs in a folder of their own.

import { execFileSync } from 'node:child_process';
import { mkdtempSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';

/** Makes an empty folder. Returns it with what removes it again. */
export function makeFolder() {
  const folder = mkdtempSync(join(tmpdir(), 'quorix-browser-'));
  return { folder, remove: () => rmSync(folder, { recursive: true }) };
}

/** Runs `quorix` on a FASTA text. Returns the path of the report. */
export function searchText(folder, text, options = []) {
  const genome = join(folder, 'genome.fa');
  writeFileSync(genome, text);
  return searchFile(folder, genome, options);
}

/** Runs `quorix` on a file. Returns the path of the report. */
export function searchFile(folder, genome, options = []) {
  const report = join(folder, 'genome.report');
  execFileSync(process.env.QUORIX, [...options, genome, report], { stdio: 'ignore' });
  return report;
}

/** Runs `quorix-tools` with these arguments. Returns its standard output. */
export function runTools(...args) {
  return execFileSync(process.env.QUORIX_TOOLS, args, { encoding: 'utf8', maxBuffer: 2 ** 30 });
}
