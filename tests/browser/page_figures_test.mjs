// What the page shows and saves is what the other commands say.

import assert from 'node:assert/strict';
import { test } from 'node:test';

import { cellTexts, converted, expectQuiet, genomeText, grouped, saved, shownRows, usePages } from './pages.mjs';
import { runTools, searchText } from './programs.mjs';

const { folder, open, report } = usePages();

test('the page has the figures of stats', async () => {
  const { page, ...rest } = await open(report);
  const stats = JSON.parse(runTools('stats', '--to', 'json', '--top', '30', report));
  assert.ok(stats.total.repeats > 100);

  const totals = Object.fromEntries(await page.$$eval('#totals > div', (cards) =>
    cards.map((card) => [...card.children].map((child) => child.textContent))));
  assert.equal(totals.Records, String(stats.records.length));
  assert.equal(totals['Bases searched'], grouped(stats.records.reduce((sum, record) => sum + record.length, 0)));
  assert.equal(totals.Repeats, grouped(stats.total.repeats));
  assert.equal(totals['Bases in repeats'], grouped(stats.total.bases));
  assert.equal(totals['Share in repeats'], `${Number((stats.total.share * 100).toPrecision(4))} %`);

  const records = await cellTexts(page, '#record-table');
  assert.deepEqual(records.map((row) => row.slice(0, 4)), stats.records.map((record) =>
    [record.sequence, grouped(record.length), grouped(record.repeats), grouped(record.bases)]));

  const columns = (group) => [grouped(group.repeats), grouped(group.bases)];
  const lengths = await cellTexts(page, '#unit-length-table');
  assert.deepEqual(lengths.map((row) => row.slice(0, 3)),
    stats.unit_lengths.map((group) => [String(group.unit_length), ...columns(group)]));
  const units = await cellTexts(page, '#unit-table');
  assert.deepEqual(units.map((row) => row.slice(0, 3)),
    stats.units.map((group) => [group.unit, ...columns(group)]));

  const count = async (table) =>
    (await cellTexts(page, table)).reduce((sum, row) => sum + Number(row[1].replace(/,/g, '')), 0);
  assert.equal(await count('#length-table'), stats.total.repeats);
  assert.equal(await count('#perfection-table'), stats.total.repeats);
  expectQuiet({ page, ...rest });
});

test('what is shown is saved as convert writes it', async () => {
  const { page, ...rest } = await open(report);
  for (const format of ['bed', 'tsv']) {
    assert.deepEqual(await saved(page, format), converted(format, report));
  }
  await page.fill('[name=motif]', 'tgc');
  await page.fill('[name=minCopies]', '8.5');
  await page.press('[name=minCopies]', 'Enter');
  const wanted = converted('tsv', '--motif', 'tgc', '--min-copies', '8.5', report);
  assert.ok(wanted.toString().split('\n').length > 5);
  assert.deepEqual(await saved(page, 'tsv'), wanted);
  assert.deepEqual(rest.faults, []);
});

test('each filter takes what the filter of convert takes', async () => {
  const { page, ...rest } = await open(report);
  const filters = [
    [{ minUnit: '2', maxUnit: '3' }, ['--unit-length', '2-3']],
    [{ minLength: '30' }, ['--min-length', '30']],
    [{ minScore: '25' }, ['--min-score', '25']],
    [{ minPerfection: '97.5' }, ['--min-perfection', '97.5']],
    [{ record: 'chr2' }, ['--sequence', 'chr2']],
  ];
  for (const [fields, args] of filters) {
    await page.click('#filters [type=reset]');
    for (const [name, value] of Object.entries(fields)) await page.fill(`[name=${name}]`, value);
    await page.press('[name=record]', 'Enter');
    const wanted = converted('bed', ...args, report);
    assert.ok(wanted.length < converted('bed', report).length);
    assert.deepEqual(await saved(page, 'bed'), wanted, args.join(' '));
  }
  assert.deepEqual(rest.faults, []);
});

test('titles sort, both ways round, and what is saved has the order', async () => {
  const { page, ...rest } = await open(report);
  for (const key of ['length', 'score', 'copies', 'perfection']) {
    await page.click(`.cell-${key} button`);
    assert.equal(await page.getAttribute(`.table-head .cell-${key}`, 'aria-sort'), 'descending');
    assert.deepEqual(await saved(page, 'bed'), converted('bed', '--sort', key, report), key);
  }
  await page.click('.cell-start button');
  const starts = (await shownRows(page, 'start')).map((text) => Number(text.replace(/,/g, '')));
  assert.ok(starts.length > 15);
  assert.deepEqual(starts, [...starts].sort((a, b) => a - b));
  await page.click('.cell-start button');
  const down = (await shownRows(page, 'start')).map((text) => Number(text.replace(/,/g, '')));
  assert.deepEqual(down, [...down].sort((a, b) => b - a));
  assert.ok(down[0] > starts[0]);
  assert.deepEqual(rest.faults, []);
});

test('the density of a window is that of bedgraph', async () => {
  const { page, ...rest } = await open(report);
  await page.fill('#density-place', 'chr1:201-300');
  await page.press('#density-place', 'Enter');
  const row = converted('bedgraph', '--window', '100', '--sequence', 'chr1', report).toString()
    .split('\n').map((line) => line.split('\t')).find((line) => line[1] === '200');
  const window = Number(/windows of ([\d,]+) bp/.exec(await page.textContent('#window'))[1].replace(/,/g, ''));
  assert.equal(window, 1);
  await page.locator('#density-chart').scrollIntoViewIfNeeded();
  const box = await page.$eval('#density-chart', (chart) => {
    const { left, top, width, height } = chart.getBoundingClientRect();
    return { left, top, width, height };
  });
  // The figure that the box beside the pointer shows, base by base.
  let covered = 0;
  const seen = new Set();
  for (let x = 0; x <= box.width && seen.size < 100; x += 5) {
    await page.mouse.move(box.left + x, box.top + box.height / 3);
    const text = await page.evaluate(() => document.querySelector('#density-chart').textContent);
    const found = /chr1: ([\d,]+)–.*?(\d) of 1 bp/.exec(text);
    if (!found || seen.has(found[1])) continue;
    seen.add(found[1]);
    covered += Number(found[2]);
  }
  assert.equal(seen.size, 100);
  assert.equal(covered / 100, Number(row[3]));
  assert.deepEqual(rest.faults, []);
});

test('every form of a report is read', async () => {
  const forms = [
    ['--outputFormat', '0'], ['--outputFormat', '1', '--printRepeatSeqMode', '0'],
    ['--outputFormat', '2'], ['--outputFormat', '2', '--printRepeatSeqMode', '1'],
    ['--outputFormat', '0', '--printRepeatSeqMode', '1', '-f', '4'], ['-f', '7', '--reportUnit', '0'],
    ['--NsAsMissense', '-f', '300'], ['-M', 'exact'], ['-M', 'extendExact', '-u', '1', '-U', '60', '-D'],
  ];
  for (const options of forms) {
    const name = searchText(folder, genomeText(), options);
    const { page, ...rest } = await open(name);
    assert.deepEqual(await saved(page, 'tsv'), converted('tsv', name), options.join(' '));
    assert.deepEqual(await saved(page, 'bed'), converted('bed', name), options.join(' '));
    await page.click('#row-0');
    const text = await page.textContent('#repeat .alignment');
    const bases = converted('tsv', name).toString().split('\n')[1].split('\t')[16];
    if (bases === '.') assert.match(text, /neither bases nor alignments/);
    else assert.ok(text.replace(/[^ACGTN]/g, '').includes(bases.slice(0, 20)), options.join(' '));
    assert.deepEqual(rest.faults, []);
    await page.close();
  }
});

test('of too many repeats the table lists a sample, and says so', async () => {
  const units = ['AC', 'AG', 'CAG', 'GATA'];
  let text = '>long\n';
  for (let i = 0; i < 201000; ++i) text += `${units[i % 4].repeat(8)}TCGGATCTA\n`;
  const name = searchText(folder, text);
  const rows = converted('tsv', name).toString().trim().split('\n').slice(1);
  assert.ok(rows.length > 200000 && rows.length < 400000);
  const { page, ...rest } = await open(name);
  const listed = rows.filter((_, i) => i % 2 === 0);
  assert.equal(await page.textContent('#count'), `${grouped(listed.length)} of ` +
    `${grouped(listed.length)} repeats listed, of ${grouped(rows.length)} in the report`);
  assert.match(await page.textContent('#notes'), new RegExp(
    `holds ${grouped(listed.length)} of ${grouped(rows.length)}, one in 2 `));
  const lines = (await saved(page, 'tsv')).toString().trim().split('\n').slice(1);
  assert.equal(lines.length, listed.length);
  assert.equal(lines.join('\n'), listed.join('\n'));
  const counts = (await cellTexts(page, '#length-table')).map((row) => Number(row[1].replace(/,/g, '')));
  assert.equal(counts.reduce((sum, count) => sum + count, 0), rows.length);

  // It stays quick because only the rows in sight are elements.
  await page.focus('#table');
  await page.keyboard.press('End');
  assert.ok(await page.isVisible(`#row-${listed.length - 1}`));
  const elements = await page.$$eval('#table .table-body .table-row', (all) => all.length);
  assert.ok(elements < 100);
  expectQuiet({ page, ...rest });
});
