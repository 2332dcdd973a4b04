// The tracks in a genome browser, which has to show each repeat where it is.

import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { createServer } from 'node:http';
import { basename, join } from 'node:path';
import { after, before, test } from 'node:test';

import { launchBrowser, openPage } from './chromium.mjs';
import { makeFolder, runTools, searchText } from './programs.mjs';

const igv = new URL('./node_modules/igv/dist/igv.min.js', import.meta.url);
const flank = 'GATTCGCTAGGCTTAACCGGATCTCGATGCATCCGAAT'; // without a repeat that scores 6
const array = 'CAG'.repeat(12);
const text = `>one\n${flank}\n>two the longer one\n${flank}${array}${flank}\n`;
const repeatStart = flank.length; // 0-based, and the end is exclusive
const repeatEnd = repeatStart + array.length;
const viewedBases = 110;

const page = `<!doctype html><meta charset="utf-8"><title>tracks</title><link rel="icon" href="data:,">
<div id="view"></div><script src="/igv.min.js"></script>`;

/** Serves the page, the library and the files of a folder, in whole or by ranges of bytes. */
function serve(folder) {
  const server = createServer((request, response) => {
    const name = basename(new URL(request.url, 'http://localhost').pathname);
    if (name === '') {
      response.writeHead(200, { 'content-type': 'text/html' }).end(page);
      return;
    }
    const bytes = readFileSync(name === 'igv.min.js' ? igv : join(folder, name));
    const range = /^bytes=(\d+)-(\d*)$/.exec(request.headers.range ?? '');
    if (range) {
      const last = Math.min(Number(range[2] || bytes.length - 1), bytes.length - 1);
      const part = bytes.subarray(Number(range[1]), last + 1);
      const place = `bytes ${range[1]}-${last}/${bytes.length}`;
      response.writeHead(206, { 'content-range': place }).end(part);
    } else {
      response.writeHead(200).end(bytes);
    }
  });
  return new Promise((resolve) => {
    server.listen(0, '127.0.0.1', () => resolve(server));
  });
}

let browser;
let files;
let server;

before(async () => {
  files = makeFolder();
  const report = searchText(files.folder, text, ['-U', '6']);
  runTools('convert', '--to', 'bed', '-o', join(files.folder, 'genome.bed'), report);
  runTools('convert', '--to', 'gff3', '-o', join(files.folder, 'genome.gff3'), report);
  server = await serve(files.folder);
  browser = await launchBrowser();
});

after(async () => {
  await browser?.close();
  server?.close();
  files?.remove();
});

/** Shows the second record with one track. Returns when all is drawn. */
async function showTrack(view, format) {
  await view.goto(`http://127.0.0.1:${server.address().port}/`);
  await view.evaluate(async ({ trackFormat, baseCount }) => {
    const { igv } = window;
    const url = `genome.${trackFormat}`;
    window.shown = await igv.createBrowser(document.getElementById('view'), {
      loadDefaultGenomes: false,
      reference: { id: 'made-up', fastaURL: 'genome.fa', indexed: false },
      locus: `two:1-${baseCount}`,
      tracks: [{ type: 'annotation', format: trackFormat, url, name: 'repeats', color: 'rgb(200,0,0)' }],
    });
  }, { trackFormat: format, baseCount: viewedBases });
}

/** The part of the view that the repeat takes, in bases from its left edge. The view has `length`. */
function shownPlace(view, length) {
  return view.evaluate((baseCount) => {
    const { canvas } = window.shown.findTracks('name', 'repeats')[0].trackView.viewports[0];
    const { data } = canvas.getContext('2d').getImageData(0, 0, canvas.width, canvas.height);
    const columns = [];
    for (let place = 0; place < data.length; place += 4) {
      const isRed = data[place] > 150 && data[place + 1] < 60 && data[place + 3] > 200;
      if (isRed) columns.push((place / 4) % canvas.width);
    }
    const visible = canvas.parentElement.getBoundingClientRect();
    const drawn = canvas.getBoundingClientRect();
    const toBase = (column) =>
      ((column / canvas.width) * drawn.width + drawn.left - visible.left) * (baseCount / visible.width);
    return { start: toBase(Math.min(...columns)), end: toBase(Math.max(...columns) + 1) };
  }, length);
}

/** What the browser tells of the feature at a place of the view, which is given as a share of it. */
async function clickFeature(view, share) {
  const box = await view.evaluate(() => {
    const { canvas } = window.shown.findTracks('name', 'repeats')[0].trackView.viewports[0];
    const { left, top, width } = canvas.parentElement.getBoundingClientRect();
    return { left, top, width };
  });
  await view.mouse.click(box.left + box.width * share, box.top + 10);
  const popover = view.locator('.igv-ui-popover, .igv-popover').filter({ visible: true }).first();
  return popover.innerText();
}

for (const format of ['bed', 'gff3']) {
  test(`the genome browser shows a repeat of the ${format} at its place`, async () => {
    const { page: view, faults, requests } = await openPage(browser);
    await showTrack(view, format);
    const place = await shownPlace(view, viewedBases);
    // A pixel is a tenth of a base here.
    assert.ok(Math.abs(place.start - repeatStart) < 0.3, `begins at ${place.start}`);
    assert.ok(Math.abs(place.end - repeatEnd) < 0.3, `ends at ${place.end}`);
    const told = await clickFeature(view, (repeatStart + repeatEnd) / 2 / viewedBases);
    assert.match(told, new RegExp(`Location\\s+two:${repeatStart + 1}-${repeatEnd}\\b`));
    assert.match(told, /Name\s+AGC\n/);
    assert.match(told, /Score\s+33\n/);
    assert.deepEqual(faults, []);
    assert.ok(requests.some((address) => address.endsWith(`genome.${format}`)));
  });
}
