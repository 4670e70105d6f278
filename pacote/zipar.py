#!/usr/bin/env python3
"""Makes a zip whose bytes follow from the files' alone: zipar.py ZIP FILE...

Each file also gets a time of its own, made of its bytes, in the zip and on the disk. One time for all would not do: whoever
takes a file for unchanged by its size and time, as the launcher's cache does, would miss the next version.
"""
import datetime, hashlib, os, pathlib, sys, zipfile

INICIO = 1577836800  # 2020-01-01 UTC
PASSOS = 3 * 365 * 43200  # within three years, in the zip's steps of two seconds

with zipfile.ZipFile(sys.argv[1], 'w', zipfile.ZIP_DEFLATED, compresslevel=9) as pacote:
    for caminho in map(pathlib.Path, sys.argv[2:]):
        conteudo = caminho.read_bytes()
        hora = INICIO + 2 * (int.from_bytes(hashlib.sha256(conteudo).digest()[:8], 'big') % PASSOS)
        os.utime(caminho, (hora, hora))
        ficha = zipfile.ZipInfo(caminho.name, datetime.datetime.fromtimestamp(hora, datetime.timezone.utc).timetuple()[:6])
        ficha.create_system = 0
        ficha.compress_type = zipfile.ZIP_DEFLATED
        pacote.writestr(ficha, conteudo)
