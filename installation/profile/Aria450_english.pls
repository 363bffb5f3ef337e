; Hushvane Aria 450, english
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
P101=101 Operating mode;100;0;7;0;0;40101;3;7;;;;;0;Operation;;;101;
P102=102 Fan stage by hand;101;0;4;0;0;40102;4;10;;;;;0;Operation;;;102;
P103=103 Boost duration;102;5;240;0;0;40103;5;9;;;;;0;Operation;;;103;
P104=104 Fan stage in holiday mode;103;0;4;0;0;40104;6;10;;;;;0;Operation;;;104;
P105=105 Temperature setback in holiday mode;104;0;100;1;0;40105;7;14;;;;;0;Operation;;;105;
P106=106 Night mode begins;105;0;239;1;0;40106;8;8;;;;;0;Operation;;;106;
P107=107 Night mode ends;106;0;239;1;0;40107;9;8;;;;;0;Operation;;;107;
P108=108 Summer mode above;107;100;300;1;0;40108;10;1;;;;;0;Operation;;;108;
P109=109 Functions in use;108;0;8191;0;0;40109;11;100;Nu,Nu,Nu,Remote,Panel,Schedule,Holiday,Night,Boost,Demand,Pressure,Bypass,Cooling,Reheat,Preheat,Frost;;;;0;Operation;;;109;
P110=110 Panel language (0 en, 1 de, 2 da);109;0;2;0;0;40110;12;0;;;;;0;Operation;;;110;
P111=111 Building mark (two characters);110;0;65535;0;0;40111;13;103;;;;;0;Operation;;;111;
P112=112 Zone mark (two characters);111;0;65535;0;0;40112;14;102;;;;;0;Operation;;;112;
P113=113 Panel light stays on;112;10;600;0;0;40113;15;11;;;;;0;Operation;;;113;
P114=114 Restart delay after mains failure;113;0;60;-1;0;40114;16;11;;;;;0;Operation;;;114;
P115=115 Reserved 115;114;0;65535;0;0;40115;17;0;;;;;0;0;;;115;
P116=116 Reserved 116;115;0;65535;0;0;40116;18;0;;;;;0;0;;;116;

[List fans]
P201=201 Supply fan, stage 1;130;100;1000;1;0;40131;19;2;;;;;0;Fans;;;201;
P202=202 Supply fan, stage 2;131;100;1000;1;0;40132;20;2;;;;;0;Fans;;;202;
P203=203 Supply fan, stage 3;132;100;1000;1;0;40133;21;2;;;;;0;Fans;;;203;
P204=204 Supply fan, stage 4;133;100;1000;1;0;40134;22;2;;;;;0;Fans;;;204;
P205=205 Extract fan, stage 1;134;100;1000;1;0;40135;23;2;;;;;0;Fans;;;205;
P206=206 Extract fan, stage 2;135;100;1000;1;0;40136;24;2;;;;;0;Fans;;;206;
P207=207 Extract fan, stage 3;136;100;1000;1;0;40137;25;2;;;;;0;Fans;;;207;
P208=208 Extract fan, stage 4;137;100;1000;1;0;40138;26;2;;;;;0;Fans;;;208;
P209=209 Lowest fan speed;138;200;1500;0;0;40139;27;5;;;;;0;Fans;;;209;
P210=210 Highest fan speed;139;1000;4000;0;0;40140;28;5;;;;;0;Fans;;;210;
P211=211 Ramp-up time;140;5;300;0;0;40141;29;11;;;;;0;Fans;;;211;
P212=212 Ramp-down time;141;5;300;0;0;40142;30;11;;;;;0;Fans;;;212;
P213=213 Supply duct pressure;142;20;500;0;0;40143;31;3;;;;;0;Fans;;;213;
P214=214 Extract duct pressure;143;20;500;0;0;40144;32;3;;;;;0;Fans;;;214;
P215=215 Pressure control gain;144;1;1000;2;0;40145;33;0;;;;;0;Fans;;;215;
P216=216 Balance of supply to extract;145;-300;300;1;0;40146;34;2;;;;;0;Fans;;;216;

[List temperature]
P301=301 Room temperature;160;100;300;1;0;40161;35;1;;;;;0;Temperature;;;301;
P302=302 Supply air, lowest;161;50;250;1;0;40162;36;1;;;;;0;Temperature;;;302;
P303=303 Supply air, highest;162;150;450;1;0;40163;37;1;;;;;0;Temperature;;;303;
P304=304 Correction of the room sensor;163;-50;50;1;0;40164;38;14;;;;;0;Temperature;;;304;
P305=305 Correction of the outdoor sensor;164;-50;50;1;0;40165;39;14;;;;;0;Temperature;;;305;
P306=306 Heating only below outdoor;165;0;100;0;-50;40166;40;1;;;;;0;Temperature;;;306;
P307=307 Frost protection begins;166;0;60;0;-30;40167;41;1;;;;;0;Temperature;;;307;
P308=308 Frost protection hysteresis;167;5;100;1;0;40168;42;14;;;;;0;Temperature;;;308;
P309=309 Preheater power limit;168;0;100;0;0;40169;43;2;;;;;0;Temperature;;;309;
P310=310 Reheater gain;169;1;1000;2;0;40170;44;0;;;;;0;Temperature;;;310;
P311=311 Reheater integral time;170;1;360;-1;0;40171;45;11;;;;;0;Temperature;;;311;
P312=312 Reheater derivative time;171;0;600;0;0;40172;46;11;;;;;0;Temperature;;;312;
P313=313 Cooling begins;172;180;350;1;0;40173;47;1;;;;;0;Temperature;;;313;
P314=314 Bypass opens above;173;150;300;1;0;40174;48;1;;;;;0;Temperature;;;314;
P315=315 Bypass hysteresis;174;5;50;1;0;40175;49;14;;;;;0;Temperature;;;315;
P316=316 Slope of the supply air curve;175;-300;300;2;0;40176;50;0;;;;;0;Temperature;;;316;
P317=317 Foot of the supply air curve;176;100;300;1;0;40177;51;1;;;;;0;Temperature;;;317;
P318=318 Night setback;177;0;100;1;0;40178;52;14;;;;;0;Temperature;;;318;

[List air quality]
P401=401 CO2 in the room;200;400;2000;0;0;40201;53;12;;;;;0;Air quality;;;401;
P402=402 CO2 boost limit;201;600;5000;0;0;40202;54;12;;;;;0;Air quality;;;402;
P403=403 CO2 control gain;202;1;1000;2;0;40203;55;0;;;;;0;Air quality;;;403;
P404=404 CO2 averaging time;203;10;900;0;0;40204;56;11;;;;;0;Air quality;;;404;
P405=405 Humidity in the room;204;200;900;1;0;40205;57;13;;;;;0;Air quality;;;405;
P406=406 Humidity boost limit;205;300;950;1;0;40206;58;13;;;;;0;Air quality;;;406;
P407=407 Humidity averaging time;206;10;900;0;0;40207;59;11;;;;;0;Air quality;;;407;
P408=408 VOC index limit;207;0;1000;0;0;40208;60;0;;;;;0;Air quality;;;408;
P409=409 Sensors in use;208;0;63;0;0;40209;61;100;Nu,Nu,Nu,Nu,Nu,Nu,Nu,Nu,Nu,Nu,VOC,CO2,Humidity,Room,Panel,Duct;;;;0;Air quality;;;409;
P410=410 Lowest fan stage on demand;209;0;4;0;0;40210;62;10;;;;;0;Air quality;;;410;
P411=411 Demand control (0 off, 1 on);210;0;1;0;0;40211;63;0;;;;;0;Air quality;;;411;
P412=412 Reserved 412;211;0;65535;0;0;40212;64;0;;;;;0;0;;;412;

[List schedule]
P501=501 Monday, begin;230;0;240;1;0;40231;65;8;;;;;0;Schedule;;;501;
P502=502 Monday, end;231;0;240;1;0;40232;66;8;;;;;0;Schedule;;;502;
P503=503 Tuesday, begin;232;0;240;1;0;40233;67;8;;;;;0;Schedule;;;503;
P504=504 Tuesday, end;233;0;240;1;0;40234;68;8;;;;;0;Schedule;;;504;
P505=505 Wednesday, begin;234;0;240;1;0;40235;69;8;;;;;0;Schedule;;;505;
P506=506 Wednesday, end;235;0;240;1;0;40236;70;8;;;;;0;Schedule;;;506;
P507=507 Thursday, begin;236;0;240;1;0;40237;71;8;;;;;0;Schedule;;;507;
P508=508 Thursday, end;237;0;240;1;0;40238;72;8;;;;;0;Schedule;;;508;
P509=509 Friday, begin;238;0;240;1;0;40239;73;8;;;;;0;Schedule;;;509;
P510=510 Friday, end;239;0;240;1;0;40240;74;8;;;;;0;Schedule;;;510;
P511=511 Saturday, begin;240;0;240;1;0;40241;75;8;;;;;0;Schedule;;;511;
P512=512 Saturday, end;241;0;240;1;0;40242;76;8;;;;;0;Schedule;;;512;
P513=513 Sunday, begin;242;0;240;1;0;40243;77;8;;;;;0;Schedule;;;513;
P514=514 Sunday, end;243;0;240;1;0;40244;78;8;;;;;0;Schedule;;;514;

[List measured]
P601=601 Outdoor air;0;-400;600;1;0;30001;79;1;;;;;0;Measured values;;;601;
P602=602 Supply air;1;-400;900;1;0;30002;80;1;;;;;0;Measured values;;;602;
P603=603 Extract air;2;-400;900;1;0;30003;81;1;;;;;0;Measured values;;;603;
P604=604 Exhaust air;3;-400;900;1;0;30004;82;1;;;;;0;Measured values;;;604;
P605=605 Room;4;0;500;1;0;30005;83;1;;;;;0;Measured values;;;605;
P606=606 Behind the preheater;5;-400;900;1;0;30006;84;1;;;;;0;Measured values;;;606;
P607=607 Dew point outdoors;6;-400;600;1;0;30007;85;1;;;;;0;Measured values;;;607;
P608=608 Panel;7;0;500;1;0;30008;86;1;;;;;0;Measured values;;;608;
P609=609 Outdoor humidity;8;0;1000;1;0;30009;87;13;;;;;0;Measured values;;;609;
P610=610 Extract humidity;9;0;1000;1;0;30010;88;13;;;;;0;Measured values;;;610;
P611=611 CO2 in the room;10;0;5000;0;0;30011;89;12;;;;;0;Measured values;;;611;
P612=612 VOC index;11;0;1000;0;0;30012;90;0;;;;;0;Measured values;;;612;
P613=613 Supply air flow;12;0;2000;0;0;30013;91;4;;;;;0;Measured values;;;613;
P614=614 Extract air flow;13;0;2000;0;0;30014;92;4;;;;;0;Measured values;;;614;
P615=615 Supply fan speed;14;0;5000;0;0;30015;93;5;;;;;0;Measured values;;;615;
P616=616 Extract fan speed;15;0;5000;0;0;30016;94;5;;;;;0;Measured values;;;616;
P617=617 Supply duct pressure;16;0;1000;0;0;30017;95;3;;;;;0;Measured values;;;617;
P618=618 Extract duct pressure;17;0;1000;0;0;30018;96;3;;;;;0;Measured values;;;618;
P619=619 Pressure in the building;18;-200;200;0;0;30019;97;3;;;;;0;Measured values;;;619;
P620=620 Mains voltage;19;0;3000;1;0;30020;98;6;;;;;0;Measured values;;;620;

[List outputs and status]
P651=651 Supply fan output;40;0;1000;1;0;30041;99;2;;;;;0;Outputs and status;;;651;
P652=652 Extract fan output;41;0;1000;1;0;30042;100;2;;;;;0;Outputs and status;;;652;
P653=653 Preheater output;42;0;100;0;0;30043;101;2;;;;;0;Outputs and status;;;653;
P654=654 Reheater output;43;0;100;0;0;30044;102;2;;;;;0;Outputs and status;;;654;
P655=655 Bypass position;44;0;100;0;0;30045;103;2;;;;;0;Outputs and status;;;655;
P656=656 Heat recovery efficiency;45;0;1000;1;0;30046;104;2;;;;;0;Outputs and status;;;656;
P657=657 Power;46;0;4000;0;0;30047;105;15;;;;;0;Outputs and status;;;657;
P658=658 Fan current;47;0;500;2;0;30048;106;17;;;;;0;Outputs and status;;;658;
P659=659 Mode in force;48;0;7;0;0;30049;107;7;;;;;0;Outputs and status;;;659;
P660=660 Fan stage in force;49;0;4;0;0;30050;108;10;;;;;0;Outputs and status;;;660;
P701=701 Status;50;0;2047;0;0;30051;109;100;Nu,Nu,Nu,Nu,Nu,Mains,Running,Auto,Boost,Night,Holiday,Bypass,Heating,Cooling,Frost,Filter;;;;0;Outputs and status;;;701;
P702=702 Alarms A;51;0;65535;0;0;30052;110;100;Fire,Smoke,SupFan,ExtFan,OutSensor,SupSensor,ExtSensor,ExhSensor,Frost,Preheater,Reheater,Bypass,SupPress,ExtPress,SupFilter,ExtFilter;;;;0;Outputs and status;;;702;
P703=703 Alarms B;52;0;65535;0;0;30053;111;100;Nu,Nu,Nu,Nu,Nu,Nu,Clock,Memory,Panel,CO2Sensor,VOCSensor,HumSensor,RoomSens,CommLost,Overheat,Undervolt;;;;0;Outputs and status;;;703;
P704=704 Inputs;53;0;65535;0;0;30054;112;100;FireIn,BoostIn,ExtStop,WindowIn;;;;0;Outputs and status;;;704;
P705=705 Outputs;54;0;31;0;0;30055;113;100;Nu,Nu,Nu,Nu,Nu,Nu,Nu,Nu,Nu,Nu,Nu,AlarmOut,RunOut,Damper,PreheatOn,CoolingOn;;;;0;Outputs and status;;;705;
P706=706 Last error number;55;0;63;0;0;30056;114;0;;;;;0;Outputs and status;;;706;
P707=707 Restarts;56;0;65535;0;0;30057;115;0;;;;;0;Outputs and status;;;707;
P708=708 Bypass open (0 no, 1 yes);57;0;1;0;0;30058;116;0;;;;;0;Outputs and status;;;708;

[List service]
P801=801 Operating time;300;0;65535;0;0;41301;117;8;;;;;1;Service;;;801;
P802=802 Filter in use for;301;0;8760;0;0;41302;118;101;;;;;1;Service;;;802;
P803=803 Starts of the supply fan;302;0;65535;0;0;41303;119;0;;;;;1;Service;;;803;
P804=804 Starts of the extract fan;303;0;65535;0;0;41304;120;0;;;;;1;Service;;;804;
P805=805 Energy used;304;0;65535;0;0;41305;121;16;;;;;1;Service;;;805;
P806=806 Heat recovered;305;0;65535;-1;0;41306;122;16;;;;;1;Service;;;806;
P807=807 Filter change every;306;30;365;0;0;41307;123;18;;;;;1;Service;;;807;
P808=808 Revision (two characters);307;0;65535;0;0;41308;124;102;;;;;1;Service;;;808;
P809=809 Series (two characters);308;0;65535;0;0;41309;125;103;;;;;1;Service;;;809;
P810=810 Model number;309;0;65535;0;0;41310;126;0;;;;;1;Service;;;810;
P811=811 Controller temperature;310;0;1500;1;-400;41311;127;1;;;;;1;Service;;;811;
P812=812 Clock correction;311;-1000;1000;2;0;41312;128;19;;;;;1;Service;;;812;

; Curves: name; axis; colour; structnumber; Offset; Decimal; type; bit names; -; -; -; -; 1: on the graph.
; Types: 100 bits, below 200 signed, from 200 on unsigned.
[GraphPoints]
Graph1=Outdoor air;1;$00E06020;79;0;1;150;;;;;;1;
Graph2=Supply air;1;$0000A0E0;80;0;1;150;;;;;;1;
Graph3=Extract air;1;$0080C080;81;0;1;150;;;;;;1;
Graph4=Exhaust air;1;clFuchsia;82;0;1;150;;;;;;1;
Graph5=Room;1;$00C0C040;83;0;1;199;;;;;;1;
Graph6=Dew point;1;$00FFC000;85;0;1;150;;;;;;1;
Graph7=Extract humidity;1;$0040A020;88;0;1;200;;;;;;1;
Graph8=Heat recovery;1;clTeal;104;0;1;200;;;;;;1;
Graph9=Controller temperature;1;$00A060FF;127;-400;1;200;;;;;;1;
Graph10=CO2;2;$000000C0;89;0;0;250;;;;;;1;
Graph11=Supply fan speed;2;$00FF0060;93;0;0;250;;;;;;1;
Graph12=Extract fan speed;2;$000060E0;94;0;0;250;;;;;;1;
Graph13=Supply duct pressure;2;$00A040C0;95;0;0;250;;;;;;1;
Graph14=Power;2;$00608080;105;0;0;250;;;;;;1;
Graph15=Building pressure;2;$00C08060;97;0;0;150;;;;;;1;
Graph16=Status;2;$004040A0;109;0;0;100;Nu,Nu,Nu,Nu,Nu,Mains,Running,Auto,Boost,Night,Holiday,Bypass,Heating,Cooling,Frost,Filter;;;;;1;
Graph17=Alarms A;3;clMedGray;110;0;0;100;Fire,Smoke,SupFan,ExtFan,OutSensor,SupSensor,ExtSensor,ExhSensor,Frost,Preheater,Reheater,Bypass,SupPress,ExtPress,SupFilter,ExtFilter;;;;;1;
Graph18=Fan current;3;$00606080;106;0;2;250;;;;;;1;
Graph19=Bypass open;3;$006080FF;116;0;0;250;;;;;;1;
Graph20=Mains voltage;1;clGray;98;0;1;250;;;;;;0;
Graph21=Heat recovered;2;clOlive;122;0;-1;250;;;;;;0;

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
