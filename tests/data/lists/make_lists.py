#!/usr/bin/env python3
"""Writes the list files of this folder (their bytes matter: Windows-1252,
CR LF, lone CR and LF line ends). Run it here after changing a case."""

MAGIC = b"Orvane 2000 Sheafwork List File\r\n"

LISTS = {
    # Old magic in any case; LF, CR and CR LF; keys in any case and order;
    # unknown keys; blank lines; entry lines before the count; Windows-1252.
    "tolerant.qx3": b"orvane r15 sheafwork list file\n"
    b'"dwg#12layout","Pr\xe9sentation \x80"\r'
    b'"SOMETHING NEW","ignored"\r\n\r\n'
    b'"batch error log on?",#FALSE#\r\n'
    b'"DWG#2FileName","/p/b.dwg"\n'
    b'"DWG#0LAYOUT","no entry zero"\n'
    b'"DWG#LAYOUT","no number"\n',
    # Saved as UTF-8 with a byte-order mark.
    "utf8_bom.qx3": b"\xef\xbb\xbf" + MAGIC + '"DWG#1LAYOUT","Été"\r\n'.encode(),
    # Appended to a list: an entry before the count, settings of its own.
    "append.qx3": MAGIC + b'"DWG#1FILENAME","/b/1.dwg"\r\n'
    b'"BATCH FILE NAME","/lists/other.qx3"\r\n'
    b'"BATCH JOURNAL HEADER","theirs"\r\n'
    b'"BATCH NUM FILES",2\r\n'
    b'"BATCH WIN SIZE","640,480"\r\n'
    b'"DWG#2FILENAME","/b/2.dwg"\r\n',
    "win_size.qx3": MAGIC + b'"BATCH WIN SIZE","1280,1024"\r\n',
    # A size the host may refuse, then one without a comma.
    "win_size_odd.qx3": MAGIC + b'"BATCH WIN SIZE","1,2"\r\n'
    b'"BATCH WIN SIZE","1280"\r\n"DWG#1FILENAME","/a.dwg"\r\n',
    # Read from the command line at start-up (the extension in capitals).
    "one_row.QX3": MAGIC + b'"BATCH NUM FILES",1\r\n"DWG#1FILENAME","/plans/a.dwg"\r\n',
    # Not a list file at all.
    "not_a_list.qx3": b"hello\r\n",
    # The magic in lower case and LF, then a line that is not a key and a value.
    "malformed.qx3": b"orvane 2000 sheafwork list file\nx\n",
    # Right magic, not a list file name: the command line refuses it.
    "magic_only.txt": MAGIC,
}

for name, data in LISTS.items():
    with open(name, "wb") as out:
        out.write(data)
