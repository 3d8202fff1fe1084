// SPDX-License-Identifier: GPL-3.0-or-later
// The repairs of the writer's output, on a fragment written as the pinned
// writer writes it (tests/data/dwg/repair).

import assert from 'node:assert/strict';
import fs from 'node:fs';
import path from 'node:path';
import test from 'node:test';
import { fileURLToPath } from 'node:url';

import { repairDxf } from '../lib/repair.js';

const here = path.dirname(fileURLToPath(import.meta.url));
const fixtures = path.join(here, '..', '..', '..', 'tests', 'data', 'dwg', 'repair');
const read = (name) => fs.readFileSync(path.join(fixtures, name)).toString('latin1');
const states = JSON.parse(read('layers.json'));
const isOff = ({ handle }) => states[handle];

test('layers take their on/off state from the drawing and viewports list frozen layers under 331', () => {
  const result = repairDxf(read('as-written.dxf'), isOff);
  assert.equal(result.text, read('repaired.dxf'));
  assert.equal(result.layers, 4);
  assert.equal(result.viewportLayers, 2);
});

test('a repaired file is left as it is', () => {
  const result = repairDxf(read('repaired.dxf'), isOff);
  assert.equal(result.text, read('repaired.dxf'));
  assert.equal(result.layers + result.viewportLayers, 0);
});

test('a layer the drawing does not know keeps its colour', () => {
  const result = repairDxf(read('as-written.dxf'), () => undefined);
  assert.equal(result.layers, 0);
  assert.equal(result.text.split('341').join('331'), read('as-written.dxf').split('341').join('331'));
});
