// SPDX-License-Identifier: GPL-3.0-or-later
// Repairs made to the DXF text that LibreDWG's writer produces, before it is
// written out:
//
// - Group 62 of a LAYER record carries the layer's colour, negative when the
//   layer is off. The writer of the pinned library writes every layer of an
//   R13+ drawing off; the sign is set again from the layer decoded from the
//   drawing itself.
// - The layers frozen in a paper-space viewport are listed under group 331 of
//   the VIEWPORT entity. The pinned writer puts them under 341, which no
//   reader takes for frozen layers.
//
// The text is handled as Latin-1 so that every byte, whatever the drawing's
// code page, is kept as it was.

/**
 * @param {string} text the DXF file as a Latin-1 string (ASCII DXF)
 * @param {(layer: {handle: string, name: string}) => boolean | undefined} isOff
 *   whether the layer of that handle (upper-case hex) and name (the DXF value)
 *   is off; undefined when the drawing has no such layer
 * @returns {{text: string, layers: number, viewportLayers: number}} the
 *   repaired text, how many layer colours were changed and how many viewport
 *   frozen-layer groups were renamed
 */
export function repairDxf(text, isOff) {
  const lines = text.split('\n');
  let record = '';
  let layer = null;
  let layers = 0;
  let viewportLayers = 0;

  const finishLayer = () => {
    if (!layer || layer.colourLine < 0) return;
    const off = isOff({ handle: layer.handle, name: layer.name });
    if (off === undefined) return;
    const line = lines[layer.colourLine];
    const match = /^(\s*)(-?)(\d+)(\s*)$/.exec(line);
    if (!match) return;
    const wanted = off ? '-' : '';
    if (match[2] === wanted) return;
    // Keep the field width: the writer right-aligns numbers on six columns.
    const number = wanted + match[3];
    const padding = Math.max(0, match[1].length + match[2].length - wanted.length);
    lines[layer.colourLine] = ' '.repeat(padding) + number + match[4];
    ++layers;
  };

  for (let i = 0; i + 1 < lines.length; i += 2) {
    const code = lines[i].trim();
    if (code === '0') {
      finishLayer();
      record = lines[i + 1].trim();
      layer = record === 'LAYER' ? { handle: '', name: '', colourLine: -1 } : null;
      continue;
    }
    if (layer) {
      if (code === '5') layer.handle = lines[i + 1].trim().toUpperCase();
      else if (code === '2') layer.name = lines[i + 1].replace(/\r$/, '');
      else if (code === '62') layer.colourLine = i + 1;
    } else if (record === 'VIEWPORT' && code === '341') {
      lines[i] = lines[i].replace('341', '331');
      ++viewportLayers;
    }
  }
  finishLayer();
  return { text: lines.join('\n'), layers, viewportLayers };
}
