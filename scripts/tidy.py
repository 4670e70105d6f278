#!/usr/bin/env python3
"""clang-tidy over the shipped sources as the cross build, which must be up to date, compiles them: tidy.py [FILE...]

A source that has passed is not looked at again before something changes that it depends on: itself, a file that it
includes, its command line, the checks, the tools."""
import concurrent.futures, functools, hashlib, json, os, pathlib, subprocess, sys

RAIZ = pathlib.Path(__file__).resolve().parent.parent
BUILD = RAIZ / 'build' / 'release'
PASSARAM = BUILD / 'tidy'
COMPILADOR = 'x86_64-w64-mingw32-g++-posix'


def saida(*comando, **opcoes):
    return subprocess.run(comando, check=True, capture_output=True, text=True, cwd=RAIZ, **opcoes)


def argumentos():
    """What makes clang take the cross compiler's headers; of the compiler's own it has others, which it can parse."""
    texto = saida(COMPILADOR, '-x', 'c++', '-E', '-v', '-', input='').stderr
    pastas = texto.split('#include <...> search starts here:')[1].split('End of search list')[0].split()
    extras = ['--target=x86_64-w64-mingw32', '-nostdinc++', '-Wno-unknown-warning-option']
    extras += ['-isystem' + p for p in pastas if '/include/c++' in p or p.endswith('/x86_64-w64-mingw32/include')]
    return ['--extra-arg=' + extra for extra in extras]


def dependencias():
    """The files that each object was made of, the last time it was."""
    deles = {}
    for linha in saida('ninja', '-C', BUILD, '-t', 'deps').stdout.splitlines():
        if linha.startswith(' '):
            deles[objeto].append(BUILD / linha.strip())
        elif linha:
            objeto = linha.split(': #deps')[0]
            deles[objeto] = []
    return deles


@functools.cache
def impressao(arquivo):
    return hashlib.sha256(arquivo.read_bytes()).hexdigest()


def chave(comando, arquivos):
    partes = [comando, *(impressao(a.resolve()) for a in arquivos)]
    return hashlib.sha256('\n'.join(partes).encode()).hexdigest()


def main():
    fontes = sys.argv[1:] or saida('git', 'ls-files', *(p + '/*.cpp' for p in (
        'core', 'app', 'update', 'game', 'ui', 'tools'))).stdout.split()
    extras, deles = argumentos(), dependencias()
    comandos = {os.path.relpath(c['file'], RAIZ): c['command']
                for c in json.loads((BUILD / 'compile_commands.json').read_text())}
    de_todos = saida('clang-tidy', '--version').stdout + impressao(RAIZ / '.clang-tidy') + ' '.join(extras)
    PASSARAM.mkdir(exist_ok=True)

    def conferir(fonte):
        objeto = comandos[fonte].split(' -o ')[1].split()[0]
        passou = PASSARAM / fonte.replace('/', '-')
        agora = chave(de_todos + comandos[fonte], deles[objeto])
        if passou.exists() and passou.read_text() == agora:
            return None
        r = subprocess.run(['clang-tidy', '--quiet', '-p', BUILD, *extras, fonte], capture_output=True, text=True, cwd=RAIZ)
        if r.returncode == 0:
            passou.write_text(agora)
            return None
        return r.stdout + '\n'.join(l for l in r.stderr.splitlines() if 'warnings generated' not in l)

    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as equipe:
        faltas = [f for f in equipe.map(conferir, fontes) if f is not None]
    print('\n'.join(faltas), end='')
    return 1 if faltas else 0


if __name__ == '__main__':
    sys.exit(main())
