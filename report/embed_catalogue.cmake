# Writes the C++ source that holds the file CATALOGO: cmake -D CATALOGO=... -D SAIDA=... -P this
file(READ ${CATALOGO} texto)
set(fonte "// Generated from data/regras.csv; change that.\n#include \"report/embedded_catalogue.h\"\n\n")
string(APPEND fonte "namespace tremvik::report {\n\nstd::string_view EmbeddedCatalogue() {\n")
string(APPEND fonte "  return R\"csv(${texto})csv\";\n}\n\n}  // namespace tremvik::report\n")
file(WRITE ${SAIDA} "${fonte}")
