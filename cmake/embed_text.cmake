# Writes the C++ source of a function FUNCAO, declared in PASTA/embedded_texts.h, that gives the text of the file
# ARQUIVO: cmake -D ARQUIVO=... -D PASTA=report -D FUNCAO=... -D SAIDA=... -P this
file(READ ${ARQUIVO} texto)
get_filename_component(nome ${ARQUIVO} NAME)
set(fonte "// Generated from ${nome}; change that.\n#include \"${PASTA}/embedded_texts.h\"\n\n")
string(APPEND fonte "namespace tremvik::${PASTA} {\n\nstd::string_view ${FUNCAO}() {\n")
string(APPEND fonte "  return R\"texto(${texto})texto\";\n}\n\n}  // namespace tremvik::${PASTA}\n")
file(WRITE ${SAIDA} "${fonte}")
