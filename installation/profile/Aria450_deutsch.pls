; Hushvane Aria 450, deutsch
; Made by scripts/make-installation. The program writes the sections VisibleGraph and GraphPoints
; back at its close, with the colours, axes and visible curves that the user chose.

[NabtoSection]
DF_HPM_SNUM=0
DF_HPM_SETPKTNUM=900
Enabled=true
DebugLog=false
DF_FDCountNum=256
ErrorLogOffset=512
NabtoErrorlogEnable=true

; Poll questions: obj; command; address; length. Command 3 reads setpoints, 4 datapoints. Their order
; is the order of the values in a data line; the first value has structnumber 3.
[NabtoDevice]
Poll1=0;3;100;16;
Poll2=0;3;130;16;
Poll3=0;3;160;18;
Poll4=0;3;200;12;
Poll5=0;3;230;14;
Poll6=0;4;0;20;
Poll7=0;4;40;18;
Poll8=1;3;300;12;

; Devices: Enable first, then questions: device number; function; address; count; list section.
; Function 3 lists are setpoints, which setpoint files hold; the others are readings and service values.
[Device Aria 450]
Enable=true
R1=30;3;100;16;List operation;
R2=30;3;130;16;List fans;
R3=30;3;160;18;List temperature;
R4=30;3;200;12;List air quality;
R5=30;3;230;14;List schedule;
R6=30;4;0;20;List measured;
R7=30;4;40;18;List outputs and status;
W1=30;16;100;16;List operation;
W2=30;16;130;16;List fans;
W3=30;16;160;18;List temperature;
W4=30;16;200;12;List air quality;
W5=30;16;230;14;List schedule;

[Device Aria 450 service]
Enable=true
R1=30;4;300;12;List service;

; List rows: name; EEadr; Min; Max; Decimal; Offset; ModbusAdr; structnumber; Enhed; bit names; User2;
; User3; User4; write type; group (0: shown nowhere); -; -; help number. Limits are raw values.
[List operation]
P101=101 Betriebsart;100;0;7;0;0;40101;3;7;;;;;0;Betrieb;;;101;
P102=102 Lüfterstufe von Hand;101;0;4;0;0;40102;4;10;;;;;0;Betrieb;;;102;
P103=103 Dauer der Stoßlüftung;102;5;240;0;0;40103;5;9;;;;;0;Betrieb;;;103;
P104=104 Lüfterstufe in den Ferien;103;0;4;0;0;40104;6;10;;;;;0;Betrieb;;;104;
P105=105 Absenkung in den Ferien;104;0;100;1;0;40105;7;14;;;;;0;Betrieb;;;105;
P106=106 Nachtbetrieb beginnt;105;0;239;1;0;40106;8;8;;;;;0;Betrieb;;;106;
P107=107 Nachtbetrieb endet;106;0;239;1;0;40107;9;8;;;;;0;Betrieb;;;107;
P108=108 Sommerbetrieb oberhalb von;107;100;300;1;0;40108;10;1;;;;;0;Betrieb;;;108;
P109=109 Benutzte Funktionen;108;0;8191;0;0;40109;11;100;Nu,Nu,Nu,Fern,Bedienung,Zeitprog,Ferien,Nacht,Stoß,Bedarf,Druck,Bypass,Kühlen,Nachheiz,Vorheiz,Frost;;;;0;Betrieb;;;109;
P110=110 Sprache am Bedienteil (0 en, 1 de, 2 da);109;0;2;0;0;40110;12;0;;;;;0;Betrieb;;;110;
P111=111 Gebäudekennung (zwei Zeichen);110;0;65535;0;0;40111;13;103;;;;;0;Betrieb;;;111;
P112=112 Zonenkennung (zwei Zeichen);111;0;65535;0;0;40112;14;102;;;;;0;Betrieb;;;112;
P113=113 Bedienteil bleibt beleuchtet;112;10;600;0;0;40113;15;11;;;;;0;Betrieb;;;113;
P114=114 Wiederanlauf nach Netzausfall;113;0;60;-1;0;40114;16;11;;;;;0;Betrieb;;;114;
P115=115 Reserviert 115;114;0;65535;0;0;40115;17;0;;;;;0;0;;;115;
P116=116 Reserviert 116;115;0;65535;0;0;40116;18;0;;;;;0;0;;;116;

[List fans]
P201=201 Zuluft, Stufe 1;130;100;1000;1;0;40131;19;2;;;;;0;Ventilatoren;;;201;
P202=202 Zuluft, Stufe 2;131;100;1000;1;0;40132;20;2;;;;;0;Ventilatoren;;;202;
P203=203 Zuluft, Stufe 3;132;100;1000;1;0;40133;21;2;;;;;0;Ventilatoren;;;203;
P204=204 Zuluft, Stufe 4;133;100;1000;1;0;40134;22;2;;;;;0;Ventilatoren;;;204;
P205=205 Abluft, Stufe 1;134;100;1000;1;0;40135;23;2;;;;;0;Ventilatoren;;;205;
P206=206 Abluft, Stufe 2;135;100;1000;1;0;40136;24;2;;;;;0;Ventilatoren;;;206;
P207=207 Abluft, Stufe 3;136;100;1000;1;0;40137;25;2;;;;;0;Ventilatoren;;;207;
P208=208 Abluft, Stufe 4;137;100;1000;1;0;40138;26;2;;;;;0;Ventilatoren;;;208;
P209=209 Kleinste Drehzahl;138;200;1500;0;0;40139;27;5;;;;;0;Ventilatoren;;;209;
P210=210 Größte Drehzahl;139;1000;4000;0;0;40140;28;5;;;;;0;Ventilatoren;;;210;
P211=211 Hochlaufzeit;140;5;300;0;0;40141;29;11;;;;;0;Ventilatoren;;;211;
P212=212 Auslaufzeit;141;5;300;0;0;40142;30;11;;;;;0;Ventilatoren;;;212;
P213=213 Druck im Zuluftkanal;142;20;500;0;0;40143;31;3;;;;;0;Ventilatoren;;;213;
P214=214 Druck im Abluftkanal;143;20;500;0;0;40144;32;3;;;;;0;Ventilatoren;;;214;
P215=215 Verstärkung der Druckregelung;144;1;1000;2;0;40145;33;0;;;;;0;Ventilatoren;;;215;
P216=216 Ausgleich Zuluft zu Abluft;145;-300;300;1;0;40146;34;2;;;;;0;Ventilatoren;;;216;

[List temperature]
P301=301 Raumtemperatur;160;100;300;1;0;40161;35;1;;;;;0;Temperatur;;;301;
P302=302 Zuluft, kleinste;161;50;250;1;0;40162;36;1;;;;;0;Temperatur;;;302;
P303=303 Zuluft, größte;162;150;450;1;0;40163;37;1;;;;;0;Temperatur;;;303;
P304=304 Korrektur des Raumfühlers;163;-50;50;1;0;40164;38;14;;;;;0;Temperatur;;;304;
P305=305 Korrektur des Außenfühlers;164;-50;50;1;0;40165;39;14;;;;;0;Temperatur;;;305;
P306=306 Heizen nur unter Außentemperatur;165;0;100;0;-50;40166;40;1;;;;;0;Temperatur;;;306;
P307=307 Frostschutz beginnt;166;0;60;0;-30;40167;41;1;;;;;0;Temperatur;;;307;
P308=308 Hysterese des Frostschutzes;167;5;100;1;0;40168;42;14;;;;;0;Temperatur;;;308;
P309=309 Leistungsgrenze der Vorheizung;168;0;100;0;0;40169;43;2;;;;;0;Temperatur;;;309;
P310=310 Verstärkung der Nachheizung;169;1;1000;2;0;40170;44;0;;;;;0;Temperatur;;;310;
P311=311 Nachstellzeit der Nachheizung;170;1;360;-1;0;40171;45;11;;;;;0;Temperatur;;;311;
P312=312 Vorhaltezeit der Nachheizung;171;0;600;0;0;40172;46;11;;;;;0;Temperatur;;;312;
P313=313 Kühlen beginnt;172;180;350;1;0;40173;47;1;;;;;0;Temperatur;;;313;
P314=314 Bypass öffnet oberhalb von;173;150;300;1;0;40174;48;1;;;;;0;Temperatur;;;314;
P315=315 Hysterese des Bypasses;174;5;50;1;0;40175;49;14;;;;;0;Temperatur;;;315;
P316=316 Steigung der Zuluftkurve;175;-300;300;2;0;40176;50;0;;;;;0;Temperatur;;;316;
P317=317 Fußpunkt der Zuluftkurve;176;100;300;1;0;40177;51;1;;;;;0;Temperatur;;;317;
P318=318 Nachtabsenkung;177;0;100;1;0;40178;52;14;;;;;0;Temperatur;;;318;

[List air quality]
P401=401 CO2 im Raum;200;400;2000;0;0;40201;53;12;;;;;0;Luftqualität;;;401;
P402=402 CO2-Grenze für Stoßlüftung;201;600;5000;0;0;40202;54;12;;;;;0;Luftqualität;;;402;
P403=403 Verstärkung der CO2-Regelung;202;1;1000;2;0;40203;55;0;;;;;0;Luftqualität;;;403;
P404=404 Mittelungszeit CO2;203;10;900;0;0;40204;56;11;;;;;0;Luftqualität;;;404;
P405=405 Feuchte im Raum;204;200;900;1;0;40205;57;13;;;;;0;Luftqualität;;;405;
P406=406 Feuchtegrenze für Stoßlüftung;205;300;950;1;0;40206;58;13;;;;;0;Luftqualität;;;406;
P407=407 Mittelungszeit Feuchte;206;10;900;0;0;40207;59;11;;;;;0;Luftqualität;;;407;
P408=408 Grenze des VOC-Index;207;0;1000;0;0;40208;60;0;;;;;0;Luftqualität;;;408;
P409=409 Benutzte Fühler;208;0;63;0;0;40209;61;100;Nu,Nu,Nu,Nu,Nu,Nu,Nu,Nu,Nu,Nu,VOC,CO2,Feuchte,Raum,Bedienung,Kanal;;;;0;Luftqualität;;;409;
P410=410 Kleinste Stufe bei Bedarf;209;0;4;0;0;40210;62;10;;;;;0;Luftqualität;;;410;
P411=411 Bedarfsregelung (0 aus, 1 ein);210;0;1;0;0;40211;63;0;;;;;0;Luftqualität;;;411;
P412=412 Reserviert 412;211;0;65535;0;0;40212;64;0;;;;;0;0;;;412;

[List schedule]
P501=501 Montag, Beginn;230;0;240;1;0;40231;65;8;;;;;0;Zeitprogramm;;;501;
P502=502 Montag, Ende;231;0;240;1;0;40232;66;8;;;;;0;Zeitprogramm;;;502;
P503=503 Dienstag, Beginn;232;0;240;1;0;40233;67;8;;;;;0;Zeitprogramm;;;503;
P504=504 Dienstag, Ende;233;0;240;1;0;40234;68;8;;;;;0;Zeitprogramm;;;504;
P505=505 Mittwoch, Beginn;234;0;240;1;0;40235;69;8;;;;;0;Zeitprogramm;;;505;
P506=506 Mittwoch, Ende;235;0;240;1;0;40236;70;8;;;;;0;Zeitprogramm;;;506;
P507=507 Donnerstag, Beginn;236;0;240;1;0;40237;71;8;;;;;0;Zeitprogramm;;;507;
P508=508 Donnerstag, Ende;237;0;240;1;0;40238;72;8;;;;;0;Zeitprogramm;;;508;
P509=509 Freitag, Beginn;238;0;240;1;0;40239;73;8;;;;;0;Zeitprogramm;;;509;
P510=510 Freitag, Ende;239;0;240;1;0;40240;74;8;;;;;0;Zeitprogramm;;;510;
P511=511 Samstag, Beginn;240;0;240;1;0;40241;75;8;;;;;0;Zeitprogramm;;;511;
P512=512 Samstag, Ende;241;0;240;1;0;40242;76;8;;;;;0;Zeitprogramm;;;512;
P513=513 Sonntag, Beginn;242;0;240;1;0;40243;77;8;;;;;0;Zeitprogramm;;;513;
P514=514 Sonntag, Ende;243;0;240;1;0;40244;78;8;;;;;0;Zeitprogramm;;;514;

[List measured]
P601=601 Außenluft;0;-400;600;1;0;30001;79;1;;;;;0;Messwerte;;;601;
P602=602 Zuluft;1;-400;900;1;0;30002;80;1;;;;;0;Messwerte;;;602;
P603=603 Abluft;2;-400;900;1;0;30003;81;1;;;;;0;Messwerte;;;603;
P604=604 Fortluft;3;-400;900;1;0;30004;82;1;;;;;0;Messwerte;;;604;
P605=605 Raum;4;0;500;1;0;30005;83;1;;;;;0;Messwerte;;;605;
P606=606 Hinter der Vorheizung;5;-400;900;1;0;30006;84;1;;;;;0;Messwerte;;;606;
P607=607 Taupunkt außen;6;-400;600;1;0;30007;85;1;;;;;0;Messwerte;;;607;
P608=608 Bedienteil;7;0;500;1;0;30008;86;1;;;;;0;Messwerte;;;608;
P609=609 Feuchte außen;8;0;1000;1;0;30009;87;13;;;;;0;Messwerte;;;609;
P610=610 Feuchte der Abluft;9;0;1000;1;0;30010;88;13;;;;;0;Messwerte;;;610;
P611=611 CO2 im Raum;10;0;5000;0;0;30011;89;12;;;;;0;Messwerte;;;611;
P612=612 VOC-Index;11;0;1000;0;0;30012;90;0;;;;;0;Messwerte;;;612;
P613=613 Zuluftmenge;12;0;2000;0;0;30013;91;4;;;;;0;Messwerte;;;613;
P614=614 Abluftmenge;13;0;2000;0;0;30014;92;4;;;;;0;Messwerte;;;614;
P615=615 Drehzahl Zuluft;14;0;5000;0;0;30015;93;5;;;;;0;Messwerte;;;615;
P616=616 Drehzahl Abluft;15;0;5000;0;0;30016;94;5;;;;;0;Messwerte;;;616;
P617=617 Druck im Zuluftkanal;16;0;1000;0;0;30017;95;3;;;;;0;Messwerte;;;617;
P618=618 Druck im Abluftkanal;17;0;1000;0;0;30018;96;3;;;;;0;Messwerte;;;618;
P619=619 Druck im Gebäude;18;-200;200;0;0;30019;97;3;;;;;0;Messwerte;;;619;
P620=620 Netzspannung;19;0;3000;1;0;30020;98;6;;;;;0;Messwerte;;;620;

[List outputs and status]
P651=651 Ausgang Zuluft;40;0;1000;1;0;30041;99;2;;;;;0;Ausgänge und Status;;;651;
P652=652 Ausgang Abluft;41;0;1000;1;0;30042;100;2;;;;;0;Ausgänge und Status;;;652;
P653=653 Ausgang Vorheizung;42;0;100;0;0;30043;101;2;;;;;0;Ausgänge und Status;;;653;
P654=654 Ausgang Nachheizung;43;0;100;0;0;30044;102;2;;;;;0;Ausgänge und Status;;;654;
P655=655 Stellung des Bypasses;44;0;100;0;0;30045;103;2;;;;;0;Ausgänge und Status;;;655;
P656=656 Rückwärmzahl;45;0;1000;1;0;30046;104;2;;;;;0;Ausgänge und Status;;;656;
P657=657 Leistung;46;0;4000;0;0;30047;105;15;;;;;0;Ausgänge und Status;;;657;
P658=658 Ventilatorstrom;47;0;500;2;0;30048;106;17;;;;;0;Ausgänge und Status;;;658;
P659=659 Wirksame Betriebsart;48;0;7;0;0;30049;107;7;;;;;0;Ausgänge und Status;;;659;
P660=660 Wirksame Lüfterstufe;49;0;4;0;0;30050;108;10;;;;;0;Ausgänge und Status;;;660;
P701=701 Status;50;0;2047;0;0;30051;109;100;Nu,Nu,Nu,Nu,Nu,Netz,Läuft,Auto,Stoß,Nacht,Ferien,Bypass,Heizen,Kühlen,Frost,Filter;;;;0;Ausgänge und Status;;;701;
P702=702 Alarme A;51;0;65535;0;0;30052;110;100;Brand,Rauch,ZulVent,AblVent,AulFühler,ZulFühler,AblFühler,FolFühler,Frost,Vorheiz,Nachheiz,Bypass,ZulDruck,AblDruck,ZulFilter,AblFilter;;;;0;Ausgänge und Status;;;702;
P703=703 Alarme B;52;0;65535;0;0;30053;111;100;Nu,Nu,Nu,Nu,Nu,Nu,Uhr,Speicher,Bedienung,CO2Fühler,VOCFühler,FeuFühler,RaumFühl,KommFehlt,ZuHeiß,Unterspg;;;;0;Ausgänge und Status;;;703;
P704=704 Eingänge;53;0;65535;0;0;30054;112;100;BrandEin,StoßEin,ExtStopp,FensterE;;;;0;Ausgänge und Status;;;704;
P705=705 Ausgänge;54;0;31;0;0;30055;113;100;Nu,Nu,Nu,Nu,Nu,Nu,Nu,Nu,Nu,Nu,Nu,AlarmAus,LaufAus,Klappe,VorhEin,KühlenEin;;;;0;Ausgänge und Status;;;705;
P706=706 Letzte Fehlernummer;55;0;63;0;0;30056;114;0;;;;;0;Ausgänge und Status;;;706;
P707=707 Neustarts;56;0;65535;0;0;30057;115;0;;;;;0;Ausgänge und Status;;;707;
P708=708 Bypass offen (0 nein, 1 ja);57;0;1;0;0;30058;116;0;;;;;0;Ausgänge und Status;;;708;

[List service]
P801=801 Betriebszeit;300;0;65535;0;0;41301;117;8;;;;;1;Wartung;;;801;
P802=802 Filter in Gebrauch seit;301;0;8760;0;0;41302;118;101;;;;;1;Wartung;;;802;
P803=803 Starts Zuluft;302;0;65535;0;0;41303;119;0;;;;;1;Wartung;;;803;
P804=804 Starts Abluft;303;0;65535;0;0;41304;120;0;;;;;1;Wartung;;;804;
P805=805 Verbrauchte Energie;304;0;65535;0;0;41305;121;16;;;;;1;Wartung;;;805;
P806=806 Zurückgewonnene Wärme;305;0;65535;-1;0;41306;122;16;;;;;1;Wartung;;;806;
P807=807 Filterwechsel alle;306;30;365;0;0;41307;123;18;;;;;1;Wartung;;;807;
P808=808 Revision (zwei Zeichen);307;0;65535;0;0;41308;124;102;;;;;1;Wartung;;;808;
P809=809 Baureihe (zwei Zeichen);308;0;65535;0;0;41309;125;103;;;;;1;Wartung;;;809;
P810=810 Modellnummer;309;0;65535;0;0;41310;126;0;;;;;1;Wartung;;;810;
P811=811 Temperatur des Reglers;310;0;1500;1;-400;41311;127;1;;;;;1;Wartung;;;811;
P812=812 Korrektur der Uhr;311;-1000;1000;2;0;41312;128;19;;;;;1;Wartung;;;812;

; Curves: name; axis; colour; structnumber; Offset; Decimal; type; bit names; -; -; -; -; 1: on the graph.
; Types: 100 bits, below 200 signed, from 200 on unsigned.
[GraphPoints]
Graph1=Außenluft;1;$00E06020;79;0;1;150;;;;;;1;
Graph2=Zuluft;1;$0000A0E0;80;0;1;150;;;;;;1;
Graph3=Abluft;1;$0080C080;81;0;1;150;;;;;;1;
Graph4=Fortluft;1;clFuchsia;82;0;1;150;;;;;;1;
Graph5=Raum;1;$00C0C040;83;0;1;199;;;;;;1;
Graph6=Taupunkt;1;$00FFC000;85;0;1;150;;;;;;1;
Graph7=Feuchte der Abluft;1;$0040A020;88;0;1;200;;;;;;1;
Graph8=Rückwärmzahl;1;clTeal;104;0;1;200;;;;;;1;
Graph9=Temperatur des Reglers;1;$00A060FF;127;-400;1;200;;;;;;1;
Graph10=CO2;2;$000000C0;89;0;0;250;;;;;;1;
Graph11=Drehzahl Zuluft;2;$00FF0060;93;0;0;250;;;;;;1;
Graph12=Drehzahl Abluft;2;$000060E0;94;0;0;250;;;;;;1;
Graph13=Druck im Zuluftkanal;2;$00A040C0;95;0;0;250;;;;;;1;
Graph14=Leistung;2;$00608080;105;0;0;250;;;;;;1;
Graph15=Druck im Gebäude;2;$00C08060;97;0;0;150;;;;;;1;
Graph16=Status;2;$004040A0;109;0;0;100;Nu,Nu,Nu,Nu,Nu,Netz,Läuft,Auto,Stoß,Nacht,Ferien,Bypass,Heizen,Kühlen,Frost,Filter;;;;;1;
Graph17=Alarme A;3;clMedGray;110;0;0;100;Brand,Rauch,ZulVent,AblVent,AulFühler,ZulFühler,AblFühler,FolFühler,Frost,Vorheiz,Nachheiz,Bypass,ZulDruck,AblDruck,ZulFilter,AblFilter;;;;;1;
Graph18=Ventilatorstrom;3;$00606080;106;0;2;250;;;;;;1;
Graph19=Bypass offen;3;$006080FF;116;0;0;250;;;;;;1;
Graph20=Netzspannung;1;clGray;98;0;1;250;;;;;;0;
Graph21=Zurückgewonnene Wärme;2;clOlive;122;0;-1;250;;;;;;0;

[VisibleGraph]
graph 0=true
graph 1=true
graph 2=true
graph 3=false
graph 4=false
graph 5=true
graph 6=false
graph 7=false
graph 8=false
graph 9=true
graph 10=true
graph 11=false
graph 12=true
graph 13=false
graph 14=false
graph 15=false
graph 16=false
graph 17=true
graph 18=false
