// SPDX-License-Identifier: GPL-3.0-or-later
// The command line: exit status, one-line reason, output put in place only
// when complete. Uses the DWG samples of tests/data/dwg/samples.

import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import fs from 'node:fs';
import os from 'node:os';
import path from 'node:path';
import test from 'node:test';
import { fileURLToPath } from 'node:url';

const here = path.dirname(fileURLToPath(import.meta.url));
const program = path.join(here, '..', 'dwg2dxf.js');
const samples = path.join(here, '..', '..', '..', 'tests', 'data', 'dwg', 'samples');
const out = fs.mkdtempSync(path.join(os.tmpdir(), 'dwg2dxf-test-'));
test.after(() => fs.rmSync(out, { recursive: true, force: true }));

const run = (...args) =>
  spawnSync(process.execPath, ['--liftoff-only', program, ...args], { encoding: 'utf8' });

const cases = [
  { name: 'converts a drawing', args: [path.join(samples, 'example_2013.dwg'), path.join(out, 'a.dxf')], status: 0, reason: '' },
  { name: 'wrong command line', args: ['seul.dwg'], status: 2, reason: 'utilisation' },
  { name: 'missing drawing', args: [path.join(out, 'absent.dwg'), path.join(out, 'b.dxf')], status: 2, reason: 'lecture impossible' },
  { name: 'not a drawing', args: [path.join(samples, 'NOTICE.md'), path.join(out, 'c.dxf')], status: 1, reason: 'ne sait pas lire ce dessin' },
  { name: 'a drawing whose decoding runs deep', args: [path.join(samples, 'example_2004.dwg'), path.join(out, 'd.dxf')], status: 0, reason: '' },
  { name: 'a truncated drawing', args: [path.join(samples, 'truncated.dwg'), path.join(out, 'f.dxf')], status: 1, reason: 'ne sait pas lire ce dessin : section introuvable \\(erreur 256\\)' },
  { name: 'output folder missing', args: [path.join(samples, 'example_2013.dwg'), path.join(out, 'nulle-part', 'e.dxf')], status: 2, reason: 'écriture impossible' },
];

for (const c of cases) {
  test(c.name, () => {
    const result = run(...c.args);
    assert.equal(result.status, c.status, result.stderr);
    const lines = result.stderr.split('\n').filter((line) => line !== '');
    if (c.status === 0) {
      assert.deepEqual(lines, []);
      assert.match(fs.readFileSync(c.args[1], 'latin1'), /^999\r\n/);
    } else {
      assert.equal(lines.length, 1, result.stderr);
      assert.match(lines[0], new RegExp(`^dwg2dxf: .*${c.reason}`));
      if (c.args.length === 2) assert.equal(fs.existsSync(c.args[1]), false);
    }
  });
}

test('nothing is left beside the outputs', () => {
  assert.deepEqual(fs.readdirSync(out).filter((name) => name.endsWith('.part')), []);
});
