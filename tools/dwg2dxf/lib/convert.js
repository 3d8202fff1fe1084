// SPDX-License-Identifier: GPL-3.0-or-later
// DWG to DXF through LibreDWG compiled to WebAssembly.

import fs from 'node:fs';
import path from 'node:path';
import { fileURLToPath } from 'node:url';

import { repairDxf } from './repair.js';

const here = path.dirname(fileURLToPath(import.meta.url));
const wasmFolder = path.join(here, '..', 'node_modules', '@mlightcad', 'libredwg-web', 'wasm');

// LibreDWG's error bits from this one up mean the drawing could not be read.
const DWG_ERR_CRITICAL = 128;
const TYPE_LAYER = 51;

// What the critical bits of LibreDWG's error code say, for the user.
const CRITICAL_ERRORS = [
  [128, 'classes introuvables'],
  [256, 'section introuvable'],
  [512, 'page introuvable'],
  [1024, 'erreur interne de LibreDWG'],
  [2048, 'fichier DWG non valide'],
  [4096, "erreur d'entrée-sortie"],
  [8192, 'mémoire insuffisante'],
];

/** "section introuvable, fichier DWG non valide (erreur 2304)" */
export function describeError(status) {
  const reasons = CRITICAL_ERRORS.filter(([bit]) => (status & bit) !== 0).map(([, text]) => text);
  return reasons.length > 0 ? `${reasons.join(', ')} (erreur ${status})` : `erreur ${status}`;
}

/** A failure with the exit status it gives. */
export class ConversionError extends Error {
  constructor(message, status) {
    super(message);
    this.status = status;
  }
}

// The module is linked with a small stack in front of its static data; the
// decoder's recursion through some drawings (nested blocks and dictionaries of
// 2004-format files) runs past it and overwrites that data, which shows up
// later as "table index is out of bounds". Every call into the library runs
// on this much stack, taken from the module's heap.
const STACK_BYTES = 64 * 1024 * 1024;

async function loadLibrary() {
  const glue = path.join(wasmFolder, 'libredwg-web.js');
  const binary = path.join(wasmFolder, 'libredwg-web.wasm');
  if (!fs.existsSync(glue) || !fs.existsSync(binary)) {
    throw new ConversionError(
      `la bibliothèque LibreDWG n'est pas installée dans ${path.dirname(here)} (lancez « npm ci » dans ce dossier, ou scripts/setup.sh)`,
      2,
    );
  }
  const { default: createModule } = await import(glue);
  let exports;
  // The module prints LibreDWG's warnings on stdout/stderr; they are not
  // ours to pass on. It is instantiated here, rather than by its glue, to
  // reach the exports that move its stack pointer.
  const module = await createModule({
    locateFile: (file) => path.join(wasmFolder, file),
    print: () => {},
    printErr: () => {},
    instantiateWasm(imports, receiveInstance) {
      const compiled = new WebAssembly.Module(fs.readFileSync(binary));
      const instance = new WebAssembly.Instance(compiled, imports);
      exports = instance.exports;
      return receiveInstance(instance, compiled);
    },
  });
  const stackBase = exports.malloc(STACK_BYTES);
  if (!stackBase) throw new ConversionError('mémoire insuffisante pour LibreDWG', 1);
  // Returns what `call` returns, run with the stack pointer at the top of
  // the block taken above (16-byte aligned) and put back afterwards.
  module.withLargeStack = (call) => {
    const saved = exports.emscripten_stack_get_current();
    exports._emscripten_stack_restore((stackBase + STACK_BYTES - 16) & ~15);
    try {
      return call();
    } finally {
      exports._emscripten_stack_restore(saved);
    }
  };
  return module;
}

function layerStates(module, fileName) {
  const result = module.withLargeStack(() => module.dwg_read_file(fileName));
  if (!result || result.error >= DWG_ERR_CRITICAL || !result.data) {
    throw new ConversionError(`LibreDWG ne sait pas lire les calques de ce dessin : ${describeError(result?.error ?? 0)}`, 1);
  }
  const byHandle = new Map();
  const byName = new Map();
  const count = module.dwg_get_num_objects(result.data);
  for (let i = 0; i < count; ++i) {
    const object = module.dwg_get_object(result.data, i);
    if (!object || module.dwg_object_get_fixedtype(object) !== TYPE_LAYER) continue;
    const tio = module.dwg_object_to_object_tio(object);
    if (!tio) continue;
    const state = module.dwg_dynapi_entity_value(tio, 'off');
    if (!state?.success) continue;  // left as written
    const off = Boolean(state.data);
    const name = module.dwg_dynapi_entity_value(tio, 'name')?.data;
    const handle = module.dwg_object_get_handle_object(object)?.value;
    if (handle !== undefined) byHandle.set(BigInt(handle).toString(16).toUpperCase(), off);
    if (typeof name === 'string') byName.set(name, off);
  }
  module.dwg_free(result.data);
  return ({ handle, name }) => {
    if (byHandle.has(handle)) return byHandle.get(handle);
    if (byName.has(name)) return byName.get(name);
    // A name stored as UTF-8 (R2007 and later) reads as Latin-1 here.
    const utf8 = Buffer.from(name, 'latin1').toString('utf8');
    return byName.get(utf8);
  };
}

/**
 * Converts the DWG drawing `input` and returns the repaired DXF text as a
 * Buffer. Throws ConversionError.
 */
export async function convertDwg(input) {
  let content;
  try {
    content = fs.readFileSync(input);
  } catch (error) {
    throw new ConversionError(`lecture impossible de ${input} : ${error.message}`, 2);
  }
  const module = await loadLibrary();
  const dwgName = 'drawing.dwg';
  const dxfName = 'drawing.dxf';
  module.FS.writeFile(dwgName, content);
  content = null;
  let dxf;
  try {
    const status = module.withLargeStack(() => module.dwg_write_dxf(dwgName, dxfName));
    if (status >= DWG_ERR_CRITICAL || !module.FS.analyzePath(dxfName, false).exists) {
      throw new ConversionError(`LibreDWG ne sait pas lire ce dessin : ${describeError(status)}`, 1);
    }
    dxf = Buffer.from(module.FS.readFile(dxfName)).toString('latin1');
    module.FS.unlink(dxfName);
    const isOff = layerStates(module, dwgName);
    dxf = repairDxf(dxf, isOff).text;
  } catch (error) {
    if (error instanceof ConversionError) throw error;
    // A fault inside the WebAssembly module (RuntimeError) or its glue.
    throw new ConversionError(`LibreDWG a échoué sur ce dessin : ${error.message}`, 1);
  }
  return Buffer.from(dxf, 'latin1');
}

/**
 * Writes `data` to `output` through a file beside it, renamed into place only
 * once complete. Throws ConversionError.
 */
export function writeInPlace(output, data) {
  const partial = path.join(
    path.dirname(output),
    `.${path.basename(output)}.${process.pid}.part`,
  );
  try {
    fs.writeFileSync(partial, data);
    fs.renameSync(partial, output);
  } catch (error) {
    fs.rmSync(partial, { force: true });
    throw new ConversionError(`écriture impossible de ${output} : ${error.message}`, 2);
  }
}
