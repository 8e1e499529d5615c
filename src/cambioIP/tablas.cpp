// tablas.cpp: the dispatch tables of the pages and saves, one slot per output family. The
// request entry hands them to the page and save engines; the advanced page walks the
// output modules' tables for the sections of one unit.
#include "cambioIP/cambioIP.h"
#include "cambioIP/entrada.h"
#include "cambioIP/paginas.h"
#include "cambioIP/salida_ip.h"

#include "SalidaCOFDM/SalidaCOFDM.h"
#include "SalidaCODFMQAMB/SalidaCODFMQAMB.h"
#include "SalidaISDBT/SalidaISDBT.h"
#include "SalidaQAM/SalidaQAM.h"

// The output modules' pages and saves, one slot per family.
const CIP_TablaPagina CIP_FuncionesSondeoRapido = {1, {SALQAM_SondeoRapido, SALCOFDM_SondeoRapido, SALISDBT_SondeoRapido, SALCOFDMQAMB_SondeoRapido}};
const CIP_TablaPagina CIP_FuncionesSondeoDetallado = {1, {SALQAM_SondeoDetallado, SALCOFDM_SondeoDetallado, SALISDBT_SondeoDetallado, SALCOFDMQAMB_SondeoDetallado}};
const CIP_TablaPagina CIP_FuncionesTransporte = {0, {SALQAM_GeneraTransporte, SALCOFDM_GeneraTransporte, SALISDBT_GeneraTransporte, SALCOFDMQAMB_GeneraTransporte}};
const CIP_TablaPagina CIP_FuncionesSalida = {0, {SALQAM_GeneraSalida, SALCOFDM_GeneraSalida, SALISDBT_GeneraSalida, SALCOFDMQAMB_GeneraSalida}};
const CIP_TablaGrabar CIP_FuncionesGrTransporte = {{SALQAM_GrabaTransporte, SALCOFDM_GrabaTransporte, SALISDBT_GrabaTransporte, SALCOFDMQAMB_GrabaTransporte}};
const CIP_TablaGrabar CIP_FuncionesGrabarSalida = {{SALQAM_GrabaSalida, SALCOFDM_GrabaSalida, SALISDBT_GrabaSalida, SALCOFDMQAMB_GrabaSalida}};

// The common pages and their saves: every family uses the same functions, except the
// test page, whose QAM rows have an EAS column and whose other rows use the EU layout.
const CIP_TablaPagina CIP_FuncionesListaUnidades = {
    1, {CIPINT_GeneraListaUnidades, CIPINT_GeneraListaUnidades, CIPINT_GeneraListaUnidades, CIPINT_GeneraListaUnidades}};
const CIP_TablaPagina CIP_FuncionesListaTest = {
    1, {CIPINT_GeneraListaUnidades, CIPINT_GeneraListaUnidades, CIPINT_GeneraListaUnidades, CIPINT_GeneraListaUnidades}};
const CIP_TablaPagina CIP_FuncionesConfigRed = {
    0, {CIPINT_GeneraConfigRed, CIPINT_GeneraConfigRed, CIPINT_GeneraConfigRed, CIPINT_GeneraConfigRed}};
const CIP_TablaPagina CIP_FuncionesTest = {
    0, {CIPINT_GeneraTest, CIPINT_GeneraTestEU, CIPINT_GeneraTestEU, CIPINT_GeneraTestEU}};
const CIP_TablaGrabar CIP_FuncionesGrabarRed = {
    {CIPINT_GrabaConfigRed, CIPINT_GrabaConfigRed, CIPINT_GrabaConfigRed, CIPINT_GrabaConfigRed}};
const CIP_TablaGrabar CIP_FuncionesGrabarTest = {
    {CIPINT_GrabaConfigTest, CIPINT_GrabaConfigTest, CIPINT_GrabaConfigTest, CIPINT_GrabaConfigTest}};
// The encoder input page chooses its layout from the family itself.
const CIP_TablaPagina CIP_FuncionesConfigEntrada = {
    0, {CIPINT_GeneraEntrada, CIPINT_GeneraEntrada, CIPINT_GeneraEntrada, CIPINT_GeneraEntrada}};
const CIP_TablaGrabar CIP_FuncionesGrabarEntrada = {
    {CIPINT_GrabaConfigEntrada, CIPINT_GrabaConfigEntrada, CIPINT_GrabaConfigEntrada, CIPINT_GrabaConfigEntrada}};
// The IP input/output page chooses its layout (US for QAM) from the family itself.
const CIP_TablaPagina CIP_FuncionesSalidaIP = {
    0, {CIPINT_GeneraSalidaIP, CIPINT_GeneraSalidaIP, CIPINT_GeneraSalidaIP, CIPINT_GeneraSalidaIP}};
const CIP_TablaGrabar CIP_FuncionesGrabarSalidaIP = {
    {CIPINT_GrabaSalidaIP, CIPINT_GrabaSalidaIP, CIPINT_GrabaSalidaIP, CIPINT_GrabaSalidaIP}};
