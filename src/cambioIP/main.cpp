// main.cpp: process entry of cambioIP.cgi; the web server starts it once per request.
#include "cambioIP/cambioIP.h"

int main() { return CIP_Main(); }
