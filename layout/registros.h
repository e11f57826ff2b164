#pragma once

#include "layout/kinds.h"

namespace tremvik {

/// The record buffers of one instance, one for each kind, for its whole life.
struct Registros {
  Record<Cr01> RegistroMestre;
  Record<Cr05> RegistroDeclaracao;
  Record<Cr07> RegistroCR07;
  Record<Cr10> RegistroCR10;
  Record<Cr14> RegistroCR14;
  Record<Cr18> RegistroCR18;
  Record<Cr20> RegistroCR20;
  Record<Cr25> RegistroCR25;
  Record<Cr26> RegistroCR26;
  Record<Cr27> RegistroCR27;
  Record<Cr28> RegistroCR28;
  Record<Cr30> RegistroCR30;
  Record<Cr31> RegistroCR31;
};

}  // namespace tremvik
