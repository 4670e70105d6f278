#!/usr/bin/env python3
"""Makes the demonstration's game client: cliente_de_demonstracao.py FOLDER VERSION PROGRAM GAME

About 64 MiB in a few hundred files, with blanks and accents in the names; the same bytes each time. PROGRAM stands for
a tool of the game that may be running while an update comes, GAME for the game itself. Version 2 changes a few files and
drops one.
"""
import pathlib, random, shutil, sys

pasta, versao, programa, jogo = pathlib.Path(sys.argv[1]), int(sys.argv[2]), sys.argv[3], sys.argv[4]
shutil.rmtree(pasta, ignore_errors=True)


def escrever(caminho, tamanho, semente):
    destino = pasta / caminho
    destino.parent.mkdir(parents=True, exist_ok=True)
    destino.write_bytes(random.Random(semente).randbytes(tamanho))


regioes = ['Floresta do Sul', 'Montanhas', 'Pântano Cinza', 'Praça da Fundação']
for i in range(280):
    mudou = versao > 1 and i % 70 == 0
    escrever(f'Data/Mapas/{regioes[i % 4]}/mapa {i:03}.map', 20_000 + 977 * (i % 90), 1000 * mudou + i)
for i in range(60):
    escrever(f'Data/Sons/som {i:02}.ogg', 200_000 + 1009 * i, 5000 + i)
escrever('Data/texturas.pak', 34 << 20, 7)
escrever('Zu.ico', 4_286, 8)
if versao == 1:
    escrever('Data/evento de inverno.dat', 50_000, 9)
ferramenta = pasta / 'Ferramentas' / 'Voz do Zu.exe'
ferramenta.parent.mkdir(parents=True)
# Bytes behind a program's end change the file and not what it does.
ferramenta.write_bytes(pathlib.Path(programa).read_bytes() + b'\0' * (versao - 1))
shutil.copy(jogo, pasta / 'Zu.exe')
