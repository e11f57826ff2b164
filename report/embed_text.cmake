# Writes the C++ source of a function FUNCAO that gives the text of the file ARQUIVO:
# cmake -D ARQUIVO=... -D FUNCAO=... -D SAIDA=... -P this
file(READ ${ARQUIVO} texto)
get_filename_component(nome ${ARQUIVO} NAME)
set(fonte "// Generated from ${nome}; change that.\n#include \"report/embedded_texts.h\"\n\n")
string(APPEND fonte "namespace tremvik::report {\n\nstd::string_view ${FUNCAO}() {\n")
string(APPEND fonte "  return R\"texto(${texto})texto\";\n}\n\n}  // namespace tremvik::report\n")
file(WRITE ${SAIDA} "${fonte}")
