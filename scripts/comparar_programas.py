#!/usr/bin/env python3
"""Compares two Windows programs byte for byte and says where they part: comparar_programas.py GIVEN BUILT

A signature of GIVEN is left out: what signing adds to the end of the file, where the header points to it, and the
header's sum of the whole."""
import pathlib, struct, sys


def sem_assinatura(imagem):
    """The image as it was before it was signed but for its sum, and whether it was signed."""
    imagem = bytearray(imagem)
    opcional = struct.unpack_from('<I', imagem, 0x3C)[0] + 24
    lugar = opcional + 112 + 4 * 8
    inicio, tamanho = struct.unpack_from('<II', imagem, lugar)
    if inicio == 0:
        return imagem, False
    if inicio + tamanho != len(imagem):
        sys.exit('há bytes depois da assinatura')
    struct.pack_into('<II', imagem, lugar, 0, 0)
    return imagem[:inicio], True


def sem_soma(imagem):
    imagem = bytearray(imagem)
    struct.pack_into('<I', imagem, struct.unpack_from('<I', imagem, 0x3C)[0] + 24 + 64, 0)
    return imagem


def lugar_de(imagem, onde):
    """The section of an offset in the file, and the address in memory."""
    cabeca = struct.unpack_from('<I', imagem, 0x3C)[0]
    secoes, opcional = struct.unpack_from('<H12xH', imagem, cabeca + 6)
    for i in range(secoes):
        nome, _, endereco, tamanho, inicio = struct.unpack_from('<8sIIII', imagem, cabeca + 24 + opcional + 40 * i)
        if inicio <= onde < inicio + tamanho:
            return '%s, endereço %#x' % (nome.rstrip(b'\0').decode(), endereco + onde - inicio)
    return 'cabeçalho'


def main():
    dado, feito = (pathlib.Path(a).read_bytes() for a in sys.argv[1:3])
    nome = pathlib.Path(sys.argv[1]).name
    a, assinado = sem_assinatura(dado)
    b = feito
    if assinado:
        a, b = sem_soma(a), sem_soma(b)
    if a == b:
        print('%s: idêntico, %d bytes%s' % (nome, len(b), ' sem a assinatura' if assinado else ''))
        return 0
    comuns = min(len(a), len(b))
    diferentes = [i for i in range(comuns) if a[i] != b[i]]
    print('%s: DIFERENTE: %d bytes contra %d; diferem %d dos %d primeiros' %
          (nome, len(a), len(b), len(diferentes), comuns))
    vistas = set()
    for i in diferentes:
        onde = lugar_de(b, i)
        secao = onde.split(',')[0]
        if secao not in vistas:
            vistas.add(secao)
            print('  primeiro em %#x (%s): %s contra %s' % (i, onde, a[i:i + 16].hex(' '), b[i:i + 16].hex(' ')))
    return 1


if __name__ == '__main__':
    sys.exit(main())
