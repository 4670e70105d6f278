#!/usr/bin/env bash
# assinar.sh PROGRAM: puts an Authenticode signature on it, in place, and verifies that. ./empacotar says by what, in the
# environment, so that the password stands on no command line and in no file.
#
# No two signatures are alike, since each holds its time. So a program that was signed before, just as it is now, gets the
# signature of then: otherwise each package would make all players fetch the same programs anew.
set -eu
programa=$1
guardado=$ZU_ASSINADOS/$( (sha256sum <"$programa"; printf '%s\n' "$ZU_QUEM_ASSINA" "$ZU_CARIMBO" "$ZU_TITULO" "$ZU_PAGINA") |
    sha256sum | cut -c1-64)

assinar() {
    local como=(-h sha256 -n "$ZU_TITULO")
    [ -z "$ZU_PAGINA" ] || como+=(-i "$ZU_PAGINA")
    [ -z "$ZU_CARIMBO" ] || como+=(-ts "$ZU_CARIMBO")
    [ -z "$ZU_CADEIA" ] || como+=(-ac "$ZU_CADEIA")
    if [[ $ZU_CERTIFICADO == pkcs11:* ]]; then
        como+=(-pkcs11module "$ZU_MODULO" -pkcs11cert "$ZU_CERTIFICADO" -key "$ZU_CERTIFICADO")
    else
        como+=(-pkcs12 "$ZU_CERTIFICADO")
    fi
    como+=(-in "$1" -out "$2")
    if [ -z "$ZU_SENHA" ]; then
        osslsigncode sign "${como[@]}" </dev/null
    else
        osslsigncode sign -readpass <(printf '%s' "$ZU_SENHA") "${como[@]}" </dev/null
    fi
}

# osslsigncode ends with 0 also where the time stamp is worth nothing.
verificar() {
    osslsigncode verify -in "$1" -CAfile "$ZU_RAIZ" -TSA-CAfile "$ZU_RAIZ_DO_CARIMBO" >"$registro" 2>&1 || return 1
    [ -z "$ZU_CARIMBO" ] || grep -q 'Timestamp Server Signature verification: ok' "$registro"
}

falhou() {
    cat "$registro" >&2
    echo "$1: ${programa##*/}" >&2
    exit 1
}

registro=$ZU_ASSINADOS/registro.log
if [ ! -f "$guardado" ]; then
    rm -f "$guardado.novo"
    assinar "$programa" "$guardado.novo" >"$registro" 2>&1 || falhou "não foi possível assinar"
    verificar "$guardado.novo" || falhou "a assinatura não confere (as raízes: --raiz=, --raiz-do-carimbo=)"
    mv "$guardado.novo" "$guardado"
else
    verificar "$guardado" || falhou "a assinatura não confere"
fi
cp "$guardado" "$programa"
