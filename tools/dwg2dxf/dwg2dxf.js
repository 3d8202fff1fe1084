#!/usr/bin/env -S node --liftoff-only
// SPDX-License-Identifier: GPL-3.0-or-later
// dwg2dxf INPUT.dwg OUTPUT.dxf
//
// Converts a DWG drawing to DXF. Exit status 0 when OUTPUT was written, 1 when
// the drawing cannot be converted, 2 for a wrong command line or a file that
// cannot be read or written; the reason is one line on stderr, in French as
// the program that runs it shows it to its user.
//
// Run it with V8's baseline compiler only (--liftoff-only): the optimising
// compiler takes many seconds and hundreds of megabytes over LibreDWG's
// larger functions, for the same output.

import { ConversionError, convertDwg, writeInPlace } from './lib/convert.js';

function fail(message, status) {
  process.stderr.write(`dwg2dxf: ${message.replace(/\s+/g, ' ').trim()}\n`);
  process.exit(status);
}

const args = process.argv.slice(2);
if (args.length !== 2) fail('utilisation : dwg2dxf ENTRÉE.dwg SORTIE.dxf', 2);

try {
  writeInPlace(args[1], await convertDwg(args[0]));
} catch (error) {
  if (error instanceof ConversionError) fail(error.message, error.status);
  fail(String(error?.message ?? error), 1);
}
