#!/usr/bin/env python3
"""Holds the include rule: core <- update, game <- app <- ui <- app/main.cpp; and windows.h stays out of the sources that
also build natively. Prints each breach; usage: camadas.py REPOSITORY"""
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
            if de in PODE and '/' in alvo and de not in pode | ({'ui'} if relativo == 'app/main.cpp' else set()):
                faltas.append(f'{relativo} includes {alvo}')
            if de == 'tests':
                faltas.append(f'{relativo} includes {alvo}')

puros = re.search(r'add_library\(zu_puro STATIC(.*?)\)', (raiz / 'CMakeLists.txt').read_text(), re.S).group(1).split()
vistos, fila = set(), [raiz / p for p in puros]
assert len(fila) > 5, 'the list of native sources was not found'
while fila:
    arquivo = fila.pop()
    if arquivo in vistos or not arquivo.exists():
        continue
    vistos.add(arquivo)
    for alvo in inclusoes(arquivo):
        if alvo in ('windows.h', 'bcrypt.h', 'winhttp.h', 'shellapi.h'):
            faltas.append(f'{arquivo.relative_to(raiz)} includes {alvo}, but builds natively')
        fila.append(raiz / alvo)

for arquivo in sorted(raiz.rglob('*')):
    if arquivo.suffix in ('.h', '.cpp') and 'build' not in arquivo.relative_to(raiz).parts[0]:
        if arquivo.suffix == '.h' and re.search(r'^\s*using namespace', arquivo.read_text('utf-8'), re.M):
            faltas.append(f'{arquivo.relative_to(raiz)}: using namespace in a header')

print('\n'.join(faltas) or 'camadas em ordem')
sys.exit(1 if faltas else 0)
