// Pages of `quorix-tools html` in the browser, and what the tests of them share.

import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { join } from 'node:path';
import { after, before } from 'node:test';
import { pathToFileURL } from 'node:url';

import { launchBrowser, openPage } from './chromium.mjs';
import { makeFolder, runTools, searchText } from './programs.mjs';

export const flank = 'GATTCGCTAGGCTTAACCGGATCTCGATGCATCCGAAT'; // without a repeat that scores 6

/** Returns records with repeats of many units, some of them with edits, and one without repeats. */
export function genomeText() {
  const units = ['A', 'AC', 'CAG', 'GATA', 'TTCCA', 'AACCCT'];
  let text = '';
  for (let record = 0; record < 4; ++record) {
    text += `>chr${record + 1} number ${record + 1}\n`;
    for (let i = 0; i < 30; ++i) {
      const unit = units[(i * (record + 2)) % units.length];
      const array = unit.repeat(6 + ((i * 7) % 9) + Math.ceil(12 / unit.length));
      const place = unit.length * 4 + 1;
      const edits = [array, `${array.slice(0, place)}T${array.slice(place + 1)}`,
        `${array.slice(0, place)}G${array.slice(place)}`, array.slice(0, place) + array.slice(place + 1),
        `${array.slice(0, place)}N${array.slice(place + 1)}`];
      text += flank.slice(i % 7) + edits[i % edits.length];
    }
    text += `${flank}\n`;
  }
  return `${text}>bare\n${flank}\n`;
}

/**
 * Starts a browser before the tests of a file, and ends it after them.
 * @returns {{folder: string, report: string, open: function}} a folder for files; its report of
 *   `genomeText`; and what opens pages of reports
 */
export function usePages() {
  const { folder, remove } = makeFolder();
  const shared = { folder, report: searchText(folder, genomeText()) };
  let browser;
  before(async () => {
    browser = await launchBrowser();
  });
  after(async () => {
    await browser?.close();
    remove();
  });

  /** Writes the page of a report, opens it, and returns it once it can be used. */
  shared.open = async (reportName, options = {}) => {
    const file = join(folder, 'page.html');
    runTools('html', '-o', file, reportName);
    const opened = await openPage(browser, options);
    const address = pathToFileURL(file).href;
    await opened.page.goto(address);
    await opened.page.waitForFunction(() => document.documentElement.dataset.ready === 'all');
    return { ...opened, address };
  };
  return shared;
}

/** Fails if the page complained, or asked for anything but itself. */
export function expectQuiet({ faults, requests, address }) {
  assert.deepEqual(faults, []);
  assert.deepEqual(requests, [address]);
}

/** Returns a number as the page shows it. */
export const grouped = (number) => number.toLocaleString('en-US');

/** Returns the texts of a table of the page. */
export const cellTexts = (page, table) =>
  page.$$eval(`${table} tbody tr`, (rows) => rows.map((row) => [...row.cells].map((cell) => cell.textContent)));

/** Returns a column of the rows that the list of repeats draws. */
export const shownRows = (page, cell) =>
  page.$$eval('#table .table-body .table-row', (rows, name) =>
    rows.filter((row) => !row.hidden).sort((a, b) => a.place - b.place)
      .map((row) => row.querySelector(`.cell-${name}`).textContent), cell);

/** Presses a button that saves, and returns the bytes of the file. */
export async function saved(page, format) {
  const [download] = await Promise.all([page.waitForEvent('download'), page.click(`#save-${format}`)]);
  assert.equal(download.suggestedFilename(), `repeats.${format}`);
  return readFileSync(await download.path());
}

/** Returns the bytes that `convert` writes. */
export function converted(format, ...args) {
  return Buffer.from(runTools('convert', '--to', format, ...args), 'utf8');
}
