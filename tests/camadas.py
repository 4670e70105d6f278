#!/usr/bin/env python3
"""Holds the include rule: core <- update, game <- app <- ui <- app/main.cpp. Prints each breach; usage: camadas.py
REPOSITORY"""
import pathlib, re, sys

raiz = pathlib.Path(sys.argv[1])
PODE = {'core': {'core'}, 'update': {'core', 'update'}, 'game': {'core', 'game'},
        'app': {'core', 'update', 'game', 'app'}, 'ui': {'core', 'update', 'game', 'app', 'ui'},
        'tools': {'core', 'update', 'app', 'tools'}}
faltas = []


def inclusoes(arquivo):
    return re.findall(r'^\s*#\s*include\s+["<]([^">]+)[">]', arquivo.read_text('utf-8'), re.M)


for camada, pode in PODE.items():
    for arquivo in sorted((raiz / camada).rglob('*.[ch]*')):
        relativo = arquivo.relative_to(raiz).as_posix()
        for alvo in inclusoes(arquivo):
            de = alvo.split('/')[0]
            pode_aqui = pode | ({'ui'} if relativo == 'app/main.cpp' else set())
            if '/' in alvo and de in {*PODE, 'tests'} - pode_aqui:
                faltas.append(f'{relativo} includes {alvo}')

# Not below build/, where tests make and delete files meanwhile.
for arquivo in sorted(a for pasta in {*PODE, 'tests'} for a in (raiz / pasta).rglob('*.h')):
    if re.search(r'^\s*using namespace', arquivo.read_text('utf-8'), re.M):
        faltas.append(f'{arquivo.relative_to(raiz)}: using namespace in a header')

print('\n'.join(faltas) or 'camadas em ordem')
sys.exit(1 if faltas else 0)
