#!/usr/bin/env python3
"""Writes assinaturas.inc, the RSA cases of hash_test.cpp: gerar_assinaturas.py SIGVER.RSP > assinaturas.inc

SIGVER.RSP is NIST's "SigVer PKCS#1 Ver 1.5" response file (CAVS, FIPS 186-3), which Debian ships as
asymmetric/RSA/FIPS_186-2/SigVer15_186-3.rsp in python3-cryptography-vectors: its 3072-bit SHA-256 cases are taken. The
other cases are made here with openssl and a key that is thrown away: one good signature, and two that differ only in
the padding or in the hash. The result is committed, so that the tests need neither.
"""
import re, subprocess, sys, tempfile, pathlib


def blob(n, e):
    e = e.lstrip(b'\0')
    head = [0x31415352, len(n) * 8, len(e), len(n), 0, 0]  # BCRYPT_RSAKEY_BLOB, magic "RSA1"
    return b''.join(v.to_bytes(4, 'little') for v in head) + e + n


def row(name, n, e, message, signature, good):
    fields = ', '.join('"%s"' % b.hex() for b in (blob(n, e), message, signature))
    print('{"%s", %s, %s},' % (name, fields, 'true' if good else 'false'))


def nist(path):
    section = re.search(r'\[mod = 3072\](.*?)(\[mod|\Z)', pathlib.Path(path).read_text(), re.S).group(1)
    n = b''
    for block in section.split('\n\n'):
        f = dict(re.findall(r'^(\w+) = (.*?)\s*$', block, re.M))
        n = bytes.fromhex(f['n']) if 'n' in f else n
        if f.get('SHAAlg') == 'SHA256':
            row('NIST ' + f['Result'], n, *(bytes.fromhex(f[k]) for k in ('e', 'Msg', 'S')), f['Result'].startswith('P'))


def openssl():
    with tempfile.TemporaryDirectory() as d:
        run = lambda *a: subprocess.run(('openssl',) + a, cwd=d, check=True, capture_output=True).stdout
        run('genpkey', '-algorithm', 'RSA', '-pkeyopt', 'rsa_keygen_bits:3072', '-out', 'k')
        n = bytes.fromhex(run('rsa', '-in', 'k', '-noout', '-modulus').decode().split('=')[1])
        message = 'UpdateList assinada pelo openssl\n'.encode()
        pathlib.Path(d, 'm').write_bytes(message)
        for name, good, *options in (
                ('openssl PKCS#1 v1.5 SHA-256', True, '-sha256'),
                ('openssl PSS SHA-256', False, '-sha256', '-sigopt', 'rsa_padding_mode:pss'),
                ('openssl PKCS#1 v1.5 SHA-1', False, '-sha1')):
            row(name, n, b'\1\0\1', message, run('dgst', *options, '-sign', 'k', 'm'), good)


print('// Made by gerar_assinaturas.py: name, key blob, message, signature (hexadecimal), whether it verifies.')
nist(sys.argv[1])
openssl()
