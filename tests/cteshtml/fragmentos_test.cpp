// The fragments are the contract with the pages' browser scripts: each one must be the
// system's text byte for byte. Expected texts are written as raw strings, so an escaping
// slip in the header shows here.
#include "cteshtml/cteshtml.h"

#include <gtest/gtest.h>

#include <string_view>

namespace {

struct Fragmento {
    const char *nombre;
    const char *texto;
    std::string_view esperado;
};

void PrintTo(const Fragmento &f, std::ostream *os) { *os << f.nombre; }

const Fragmento Fragmentos[] = {
    {"htmlselectbox", htmlselectbox, R"~(<select name="%s" id="%s" size="1" %s>)~"},
    {"htmlselectoption", htmlselectoption, R"~(<option value="%s" %s >%s</option>)~"},
    {"htmlselectoptionselected", htmlselectoptionselected, R"~(selected="selected")~"},
    {"htmlselectboxfin", htmlselectboxfin, R"~(</select>)~"},
    {"htmlinput", htmlinput, R"~(<input class="inputconbordes" id="%s" size="%d" name="%s" %s onblur="%s" %s type="text" value="%s" maxlength="%d">)~"},
    {"htmlinputIP", htmlinputIP, R"~(<input class="inputconbordesIP" id="%s" size="%d" name="%s" %s onblur="%s" %s type="text" value="%s" maxlength="%d">)~"},
    {"htmlinputLCN", htmlinputLCN, R"~(<input class="inputconbordesLCN" id="%s" size="%d" name="%s" %s onblur="%s" %s type="text" value="%s" maxlength="%d">)~"},
    {"htmlinputCHName", htmlinputCHName, R"~(<input class="inputconbordesCHName" id="%s" size="%d" name="%s" %s onblur="%s" %s type="text" value="%s" maxlength="%d">)~"},
    {"htmlinput3digitos", htmlinput3digitos, R"~(<input class="inputconbordes3digitos" id="%s" size="%d" name="%s" %s onblur="%s" %s type="text" value="%s" maxlength="%d">)~"},
    {"htmlinputlikecaption", htmlinputlikecaption, R"~(<input readonly class="inputsinbordes" id="%s" size="%d" name="%s" %s onblur="%s" %s type="text" value="%s" maxlength="%d">)~"},
    {"htmlinputlikecaptionFixed", htmlinputlikecaptionFixed, R"~(<input readonly class="inputsinbordes" type="text" value="%s" %s >)~"},
    {"htmlboton", htmlboton, R"~(<button name="%s" id="%s" %s type="button">%s</button>)~"},
    {"htmlcheckbox", htmlcheckbox, R"~(<input name="%s" id="%s" type="checkbox" %s %s>)~"},
    {"htmlanterior", htmlanterior, R"~(<input id="anterior%s" name="anterior%s" value="%s" type="hidden">)~"},
    {"htmlfintabla", htmlfintabla, R"~(</tbody></table>)~"},
    {"htmldiv", htmldiv, R"~(<div id="%s">%s</div>)~"},
    {"htmldivoculto", htmldivoculto, R"~(<div id="%s" class="fondotranslucido">%s</div>)~"},
    {"htmlled", htmlled, R"~(<img src="/imagenes/%s" alt="%s" align="middle" border="0" height="25" width="25">%s)~"},
    {"htmlc3c4", htmlc3c4, R"~(<br>C3 %s/%s<br>C4 %s/%s)~"},
    {"htmlentradaactiva", htmlentradaactiva, R"~(I%d<input name="%s" id="%s" type="checkbox" onclick="EnableDisablegroupEntrada(this);" onblur="Compruebacambios(this);" onchange="Compruebacambios(this);" %s>)~"},
    {"htmlentradaactivaunica", htmlentradaactivaunica, R"~(I<input name="%s" id="%s" type="checkbox" onclick="EnableDisablegroupEntrada(this);" onblur="Compruebacambios(this);" onchange="Compruebacambios(this);" %s>)~"},
    {"htmlinputhidden", htmlinputhidden, R"~(<input id="%s" name="%s" value="%s" type="hidden">)~"},
    {"htmlStyleDisplayNone", htmlStyleDisplayNone, R"~( style='display:none')~"},
    {"htmlsalidaIPactiva", htmlsalidaIPactiva, R"~(%d<input name="%s" id="%s" type="checkbox" onclick="EnableDisablegroupSalidaIP(this);" onblur="Compruebacambios(this);" onchange="Compruebacambios(this);" %s>)~"},
    {"strJSvalidaEntero", strJSvalidaEntero, R"~(ValidarEntero(this,'%d','%d');Compruebacambios(this);)~"},
    {"strJSValidarHexa", strJSValidarHexa, R"~(ValidarHexa(this,'0x%x','0x%x');Compruebacambios(this);)~"},
    {"strJSvalidaPID", strJSvalidaPID, R"~(ValidarPID(this,'%d','%d');Compruebacambios(this);)~"},
    {"strJSValidarHexaconFiltro", strJSValidarHexaconFiltro, R"~(ValidarHexaFiltro(this,'0x%x','0x%x','0x%x','0x%x');Compruebacambios(this);)~"},
    {"strJSPermititEnteros", strJSPermititEnteros, R"~(onkeypress="return Permitekeypress(event, numeros,this);")~"},
    {"strJSPermitirreales", strJSPermitirreales, R"~(onkeypress="return Permitekeypress(event, numeros + puntuacion,this);")~"},
    {"strJSPermitirAlfa", strJSPermitirAlfa, R"~(onkeypress="return Permitekeypress(event, numeros + caracteres,this);")~"},
    {"strJSPermititHexa", strJSPermititHexa, R"~(onkeypress="return Permitekeypress(event, hexadecimal,this);")~"},
    {"strJSPermitirIPs", strJSPermitirIPs, R"~(onkeypress="return Permitekeypress(event, caracteresIPs);")~"},
    {"strJSvalidaEntDecimales", strJSvalidaEntDecimales, R"~(ValidarEnteroConDecimales(this,'%s','%s','%d');Compruebacambios(this);)~"},
    {"strJSvalidaFrecuencia", strJSvalidaFrecuencia, R"~(ValidarFrecuencia(this,'%d','%d','%s');Compruebacambios(this);)~"},
    {"strJSvalidaCadena", strJSvalidaCadena, R"~(ValidarCadena(this,'%d',numeros+caracteres);Compruebacambios(this);)~"},
    {"strJSvalidaIP", strJSvalidaIP, R"~(ValidarIPOnBlur(this,'','');Compruebacambios(this);)~"},
    {"strJScambioEntradaAudioQAM", strJScambioEntradaAudioQAM, R"~(onchange="CambioAudioInput(this);Compruebacambios(this);")~"},
    {"strJScambioAudioCodecQAM", strJScambioAudioCodecQAM, R"~(onchange="CambioAudioCodec(this);Compruebacambios(this);")~"},
    {"strJSCambioTablacanalsalidaQAM", strJSCambioTablacanalsalidaQAM, R"~(onchange="CambioTablaCanalesSalida(this);Compruebacambios(this);")~"},
    {"strJScambioModoSalidaQAM", strJScambioModoSalidaQAM, R"~(onchange="CambioModoSalidaSalida(this);Compruebacambios(this);")~"},
    {"strJSCambiotableTypeQAM", strJSCambiotableTypeQAM, R"~(onchange="CambioTableTypeCHNum(this);Compruebacambios(this);")~"},
    {"strJSClickservicesIP", strJSClickservicesIP, R"~(onclick="MuestraListaServicios(this,%d,'%s')" )~"},
    {"strJSClickServiceListSel", strJSClickServiceListSel, R"~( onclick='SelectServiceList(this);')~"},
    {"strJSPermitirNombrecanal", strJSPermitirNombrecanal, R"~(onkeypress="return FiltraSubrayadokeypress(event,this);")~"},
    {"strJSvalidaNombrecanal", strJSvalidaNombrecanal, R"~(ValidarNombrecanal(this,'%d');Compruebacambios(this);)~"},
    {"strJSMiunidad", strJSMiunidad, R"~(<b>%s<br>web connected</b>)~"},
    {"strJSMiunidadConfig", strJSMiunidadConfig, R"~(<a href="javascript:MostrarConfigTotal('');"><b>%s<br>web connected</b></a>)~"},
    {"strJSOnblurCompruebacambios", strJSOnblurCompruebacambios, R"~( onblur="Compruebacambios(this);")~"},
    {"strJSOnChangeCompruebacambios", strJSOnChangeCompruebacambios, R"~( onchange="Compruebacambios(this);")~"},
    {"strJSOnBlurOnChangeCompruebacambios", strJSOnBlurOnChangeCompruebacambios, R"~( onblur="Compruebacambios(this);" onchange="Compruebacambios(this);")~"},
    {"strJSOnBlurOnChangeFuerzacambios", strJSOnBlurOnChangeFuerzacambios, R"~( onblur="Fuerzacambios(this);" onchange="Fuerzacambios(this);")~"},
    {"strJSCambioTablacanalsalidaCOFDM", strJSCambioTablacanalsalidaCOFDM, R"~(onchange="CambioTablaCanalesSalidaCOFDM(this);Compruebacambios(this);")~"},
    {"strJSCambioModoCOFDM", strJSCambioModoCOFDM, R"~(onchange="CambioModoCOFDM(this);Compruebacambios(this);")~"},
    {"strJSMostrarConfigTotal", strJSMostrarConfigTotal, R"~(<a href="javascript:MostrarConfigTotal('%s');">%s</a>)~"},
    {"strJScambioEntradaVideo", strJScambioEntradaVideo, R"~(onchange="CambioVideoInput(this);Compruebacambios(this);")~"},
    {"strJSCambioModoCOFDMQAMB", strJSCambioModoCOFDMQAMB, R"~(onchange="CambioModoCOFDMQAMB(this);Compruebacambios(this);")~"},
    {"strJSCambioModoISDBT", strJSCambioModoISDBT, R"~(onchange="CambioModoISDBT(this);Compruebacambios(this);")~"},
    {"strJScambioTipoSalIP", strJScambioTipoSalIP, R"~(onchange="CambioTipoSalidaIP(this);Compruebacambios(this);")~"},
    {"strJScambioTxRxSalIP", strJScambioTxRxSalIP, R"~(onchange="CambioTxrxSalidaIP(this);Compruebacambios(this);")~"},
    {"strJScambioprotocolSalIP", strJScambioprotocolSalIP, R"~(onchange="CambioProtocolSalidaIP(this);Compruebacambios(this);")~"},
    {"strJSOnSalIPFECOnclick", strJSOnSalIPFECOnclick, R"~(onclick="EnableDisableFECSalidaIP(this);")~"},
    {"strJSOnBlurOnChangeCompruebacambiosEncoding", strJSOnBlurOnChangeCompruebacambiosEncoding, R"~( onblur="CheckEncoding(this);Compruebacambios(this);" onchange="CheckEncoding(this);Compruebacambios(this);")~"},
    {"strJSCambioModoQAM", strJSCambioModoQAM, R"~(onchange="CambioModoQAM(this);Compruebacambios(this);")~"},
    {"strJSOnChangeCambioModoSalidaIPCOFDM", strJSOnChangeCambioModoSalidaIPCOFDM, R"~( onchange="Compruebacambios(this);")~"},
    {"strJSOnChangeCambioModoSalidaIPQAM", strJSOnChangeCambioModoSalidaIPQAM, R"~( onchange="Compruebacambios(this);")~"},
};

class TextoDeFragmento : public ::testing::TestWithParam<Fragmento> {};

TEST_P(TextoDeFragmento, IsTheSystemsTextByteForByte)
{
    EXPECT_EQ(std::string_view(GetParam().texto), GetParam().esperado) << GetParam().nombre;
}

INSTANTIATE_TEST_SUITE_P(Todos, TextoDeFragmento, ::testing::ValuesIn(Fragmentos),
                         [](const ::testing::TestParamInfo<Fragmento> &info) { return std::string(info.param.nombre); });

TEST(Fragmentos, IpOutputModeHandlersAreSeparateNamesWithTheChangeTrackingText)
{
    EXPECT_STREQ(strJSOnChangeCambioModoSalidaIPCOFDM, strJSOnChangeCompruebacambios);
    EXPECT_STREQ(strJSOnChangeCambioModoSalidaIPQAM, strJSOnChangeCompruebacambios);
    EXPECT_NE(static_cast<const void *>(strJSOnChangeCambioModoSalidaIPCOFDM),
              static_cast<const void *>(strJSOnChangeCambioModoSalidaIPQAM));
}

TEST(Fragmentos, CheckedMarkerIsThePagesText)
{
    EXPECT_STREQ(htmlcheckboxmarcado, " checked=\"yes\" ");
}

}  // namespace
