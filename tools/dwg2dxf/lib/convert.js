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

/** A failure with the exit status it gives. */
export class ConversionError extends Error {
  constructor(message, status) {
    super(message);
    this.status = status;
  }
}

async function loadLibrary() {
  const glue = path.join(wasmFolder, 'libredwg-web.js');
  if (!fs.existsSync(glue)) {
    throw new ConversionError(
      `la bibliothèque LibreDWG n'est pas installée dans ${path.dirname(here)} (lancez « npm ci » dans ce dossier, ou scripts/setup.sh)`,
      2,
    );
  }
  const { default: createModule } = await import(glue);
  // The module prints LibreDWG's warnings on stdout/stderr; they are not
  // ours to pass on.
  return createModule({
    locateFile: (file) => path.join(wasmFolder, file),
    print: () => {},
    printErr: () => {},
  });
}

function layerStates(module, fileName) {
  const result = module.dwg_read_file(fileName);
  if (!result || result.error >= DWG_ERR_CRITICAL || !result.data) {
    throw new ConversionError(`LibreDWG ne sait pas lire les calques de ce dessin (erreur ${result?.error})`, 1);
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
    const status = module.dwg_write_dxf(dwgName, dxfName);
    if (status >= DWG_ERR_CRITICAL || !module.FS.analyzePath(dxfName, false).exists) {
      throw new ConversionError(`LibreDWG ne sait pas lire ce dessin (erreur ${status})`, 1);
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
