// Bundles the page and writes it as a C++ source: build.mjs MODULES OUTPUT.cpp NOTICES.txt. MODULES
// is the folder node_modules; the notices are those of the packages that are part of the page. The
// same sources and modules give the same bytes.

import { createHash } from 'node:crypto';
import { readFileSync, writeFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { dirname, join } from 'node:path';
import { fileURLToPath } from 'node:url';

const [modules, output, noticeFile] = process.argv.slice(2);
const here = dirname(fileURLToPath(import.meta.url));
const esbuild = createRequire(join(modules, 'none.js'))('esbuild');

/** The packages that become part of the page, with the files that their licences ask to be shown. */
const NOTICES = [
  ['echarts', ['NOTICE', 'LICENSE', 'licenses/LICENSE-d3']],
  ['zrender', ['LICENSE']],
  ['tslib', ['LICENSE.txt']],
];

/** Returns the bundle of a source file, without line ends after it. */
function bundle(source) {
  const result = esbuild.buildSync({
    entryPoints: [join(here, 'src', source)],
    absWorkingDir: here,
    nodePaths: [modules],
    bundle: true,
    minify: true,
    format: 'iife',
    target: ['es2021', 'chrome96', 'firefox98', 'safari15.4'],
    charset: 'ascii',
    legalComments: 'none',
    write: false,
  });
  return result.outputFiles[0].text.trim();
}

/** Returns a text as it stands in an element. */
function escaped(text) {
  return text.replace(/&/g, '&amp;').replace(/</g, '&lt;').replace(/>/g, '&gt;');
}

function notices() {
  return NOTICES.map(([name, files]) => {
    const { version, license } = JSON.parse(readFileSync(join(modules, name, 'package.json'), 'utf8'));
    const texts = files.map((file) => readFileSync(join(modules, name, file), 'utf8').trim());
    return [`${name} ${version} (${license})`, ...texts].join('\n\n');
  }).join('\n\n----------\n\n');
}

/** Returns a text as string literals of C++, none of which is too long for a compiler. */
function literals(text) {
  const bytes = Buffer.from(text, 'utf8');
  const pieces = [];
  let piece = '';
  for (const byte of bytes) {
    const isPlain = byte >= 0x20 && byte < 0x7f && byte !== 0x22 && byte !== 0x5c && byte !== 0x3f;
    piece += isPlain ? String.fromCharCode(byte) : `\\${byte.toString(8).padStart(3, '0')}`;
    if (piece.length > 4000) {
      pieces.push(`    "${piece}"`);
      piece = '';
    }
  }
  return [...pieces, `    "${piece}"`].join('\n');
}

const script = bundle('main.js');
// Neither may end its element early.
for (const [text, end] of [[script, '</script'], [script, '<!--']]) {
  if (text.includes(end)) throw new Error(`the bundle holds ${end}`);
}
const values = {
  '@STYLE@': bundle('style.css'),
  '@SCRIPT@': script,
  '@SCRIPT-HASH@': `sha256-${createHash('sha256').update(script).digest('base64')}`,
  '@NOTICES@': escaped(notices()),
};
const page = readFileSync(join(here, 'template.html'), 'utf8')
  .replace(/@[A-Z-]+@/g, (mark) => values[mark] ?? mark);
for (const mark of ['@TABLE-DATA@', '@DETAIL-DATA@']) {
  if (page.split(mark).length !== 2) throw new Error(`${mark} does not stand in the page once`);
}

writeFileSync(noticeFile, `${notices()}\n`);
writeFileSync(output, `// Made by build.mjs.

#include "tools/page/page_template.h"

namespace quorix::tools {

namespace {

constexpr char kPage[] =
${literals(page)};

}  // namespace

std::string_view page_template() {
  return {kPage, sizeof kPage - 1};
}

}  // namespace quorix::tools
`);
