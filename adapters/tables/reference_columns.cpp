#include "adapters/tables/reference_columns.h"

#include <array>

namespace tremvik {
namespace {

constexpr std::array kTodosCFOPs{ReferenceColumn{.name = "CFOP", .indexed = true},
                                 ReferenceColumn{.name = "Conjunto"},
                                 ReferenceColumn{.name = "GRUPO", .integer = true}};
constexpr std::array kQuadroCFOPs{
    ReferenceColumn{.name = "Descrição"}, ReferenceColumn{.name = "Grupo 15", .indexed = true},
    ReferenceColumn{.name = "Grupo 26", .indexed = true},
    ReferenceColumn{.name = "Grupo 37", .indexed = true}, ReferenceColumn{.name = "Conjunto"}};
constexpr std::array kEstados{ReferenceColumn{.name = "Código", .indexed = true},
                              ReferenceColumn{.name = "Sigla"}};
constexpr std::array kZonaFranca{ReferenceColumn{.name = "CódMunicípio", .indexed = true},
                                 ReferenceColumn{.name = "Nome"}};
constexpr std::array kQuadroOcorrencias{ReferenceColumn{.name = "CódSubItem", .indexed = true},
                                        ReferenceColumn{.name = "OpPróprias", .integer = true},
                                        ReferenceColumn{.name = "Descrição"}};
constexpr std::array kCodigosDipam{ReferenceColumn{.name = "código", .indexed = true}};
constexpr std::array kMunicipios{ReferenceColumn{.name = "Códmunicípio", .indexed = true},
                                 ReferenceColumn{.name = "Nome"}};
constexpr std::array kCNAEs{ReferenceColumn{.name = "CNAE", .indexed = true}};

constexpr std::array kTables{
    ReferenceTable{"tblTodosCFOPs", "tblTodosCFOPs.csv", kTodosCFOPs},
    ReferenceTable{"tblQuadroCFOPs", "tblQuadroCFOPs.csv", kQuadroCFOPs},
    ReferenceTable{"tblEstados", "tblEstados.csv", kEstados},
    ReferenceTable{"tblMunicípiosZFM_ALC", "tblMunicipiosZFM_ALC.csv", kZonaFranca},
    ReferenceTable{"tblQuadroOcorrências", "tblQuadroOcorrencias.csv", kQuadroOcorrencias},
    ReferenceTable{"tblcódigosdipam", "tblcodigosdipam.csv", kCodigosDipam},
    ReferenceTable{"tblmunicípios", "tblmunicipios.csv", kMunicipios},
    ReferenceTable{"tblCNAEsRegimeDispensado", "tblCNAEsRegimeDispensado.csv", kCNAEs},
};

}  // namespace

std::span<const ReferenceTable> ReferenceTables() { return kTables; }

}  // namespace tremvik
