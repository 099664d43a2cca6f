//Maya ASCII 2018 scene
//Name: room.ma
//Last modified: Fri, Jan 11, 2019 10:12:13 AM
//Codeset: 1252
requires maya "2018";
requires -nodeType "glossSurface" -nodeType "glossOptions" -dataType "glossWeights" "lightworks" "4.0.2";
requires "stereoCamera" "10.0";
requires -nodeType "furGroom" "fur" "2.1";
currentUnit -l centimeter -a degree -t film;
fileInfo "application" "maya";
fileInfo "product" "Maya 2018";
fileInfo "version" "2018";
fileInfo "cutIdentifier" "201706261615-f9658c4cfc";
fileInfo "osv" "Linux 3.10";
fileInfo "license" "studio \"north\"";
createNode transform -s -n "persp";
	rename -uid "A1B2C3D4-0000-1111-2222-000000000001";
	setAttr ".v" no;
	setAttr ".t" -type "double3" 14 9 16 ;
	setAttr ".r" -type "double3" -20.4 41.2 0 ;
createNode camera -s -n "perspShape" -p "persp";
	rename -uid "A1B2C3D4-0000-1111-2222-000000000002";
	setAttr -k off ".v" no;
	setAttr ".fl" 34.999999999999993;
	setAttr ".coi" 23.4;
	setAttr ".imn" -type "string" "persp";
	setAttr ".den" -type "string" "persp_depth";
	setAttr ".man" -type "string" "persp_mask";
	setAttr ".hc" -type "string" "viewSet -p %camera";
	setAttr ".ai_translator" -type "string" "perspective";
createNode transform -s -n "top";
	rename -uid "A1B2C3D4-0000-1111-2222-000000000003";
	setAttr ".v" no;
	setAttr ".t" -type "double3" 0 1000.1 0 ;
	setAttr ".r" -type "double3" -89.999999999999986 0 0 ;
createNode camera -s -n "topShape" -p "top";
	rename -uid "A1B2C3D4-0000-1111-2222-000000000004";
	setAttr -k off ".v" no;
	setAttr ".rnd" no;
	setAttr ".coi" 1000.1;
	setAttr ".ow" 30;
	setAttr ".imn" -type "string" "top";
	setAttr ".o" yes;
createNode transform -n "shotFill";
	rename -uid "A1B2C3D4-0000-1111-2222-000000000010";
	setAttr ".t" -type "double3" 0 1.6 9 ;
createNode camera -n "shotFillShape" -p "shotFill";
	rename -uid "A1B2C3D4-0000-1111-2222-000000000011";
	setAttr -k off ".v";
	setAttr ".rnd" no;
	setAttr ".cap" -type "double2" 1.41732 0.94488 ;
	setAttr ".ff" 0;
	setAttr ".ovr" 1.3;
	setAttr ".fl" 50;
	setAttr ".ncp" 0.01;
	setAttr ".dfg" yes;
	setAttr ".dgo" 0.7;
	setAttr ".dgc" -type "float3" 0 0 0 ;
createNode transform -n "shotWide" -p "shotFill";
	rename -uid "A1B2C3D4-0000-1111-2222-000000000012";
createNode camera -n "shotWideShape" -p "shotWide";
	rename -uid "A1B2C3D4-0000-1111-2222-000000000013";
	setAttr ".ff" 1;
	setAttr ".cap" -type "double2" 0.825 0.446 ;
	setAttr ".lsr" 2;
	setAttr ".ffo" 0.25;
	setAttr ".dr" yes;
createNode transform -n "shotTall" -p "shotFill";
	rename -uid "A1B2C3D4-0000-1111-2222-000000000014";
createNode camera -n "shotTallShape" -p "shotTall";
	rename -uid "A1B2C3D4-0000-1111-2222-000000000015";
	setAttr ".ff" 2;
	setAttr ".fio" -type "double2" 0.1 -0.05 ;
	setAttr ".pze" yes;
	setAttr ".hpn" 0.2;
	setAttr ".zom" 0.75;
createNode transform -n "shotOver" -p "shotFill";
	rename -uid "A1B2C3D4-0000-1111-2222-000000000016";
createNode camera -n "shotOverShape" -p "shotOver";
	rename -uid "A1B2C3D4-0000-1111-2222-000000000017";
	setAttr ".ff" 3;
	setAttr ".ovr" 1.1;
createNode glossPlate -n "glossPlateShape1" -p "shotOverShape";
	rename -uid "A1B2C3D4-0000-1111-2222-000000000018";
	setAttr ".imn" -type "string" "plates/sc010.####.exr";
	setAttr ".cov" -type "short2" 1920 1080 ;
createNode transform -n "set";
	rename -uid "A1B2C3D4-0000-1111-2222-000000000020";
	addAttr -ci true -sn "dept" -ln "department" -dt "string";
	addAttr -ci true -k true -sn "wear" -ln "wear" -min 0 -max 1 -at "double";
	setAttr ".dept" -type "string" "layout";
	setAttr -k on ".wear" 0.4;
createNode transform -n "bench" -p "set";
	rename -uid "A1B2C3D4-0000-1111-2222-000000000021";
	setAttr ".t" -type "double3" 1 0.5 -2 ;
	setAttr ".rp" -type "double3" 0.5 0 0.5 ;
	setAttr ".sp" -type "double3" 0.5 0 0.5 ;
	setAttr ".s" -type "double3" 2 1 0.5 ;
createNode mesh -n "benchShape" -p "bench";
	rename -uid "A1B2C3D4-0000-1111-2222-000000000022";
	setAttr -k off ".v";
	setAttr -s 2 ".iog[0].og";
	setAttr ".iog[0].og[0].gcl" -type "componentList" 1 "f[0:3]";
	setAttr ".iog[0].og[1].gcl" -type "componentList" 2 "f[4]" "f[5]";
	setAttr ".vir" yes;
	setAttr ".vif" yes;
	setAttr ".pv" -type "double2" 0.5 0.375 ;
	setAttr ".uvst[0].uvsn" -type "string" "map1";
	setAttr -s 14 ".uvst[0].uvsp[0:13]" -type "float2" 0.375 0 0.625 0 0.375
		 0.25 0.625 0.25 0.375 0.5 0.625 0.5 0.375 0.75 0.625 0.75 0.375 1 0.625 1 0.875 0
		 0.875 0.25 0.125 0 0.125 0.25;
	setAttr ".uvst[1].uvsn" -type "string" "lightmap";
	setAttr -s 4 ".uvst[1].uvsp[0:3]" -type "float2" 0 0 1 0 1 1 0 1;
	setAttr ".cuvs" -type "string" "lightmap";
	setAttr ".dcol" yes;
	setAttr ".dcc" -type "string" "Ambient+Diffuse";
	setAttr ".ccls" -type "string" "colorSet1";
	setAttr ".clst[0].clsn" -type "string" "colorSet1";
	setAttr -s 4 ".clst[0].clsp";
	setAttr ".clst[0].clsp[0:3]"  1 0 0 1 0 1 0 1 0 0 1 1 1 1 1 1;
	setAttr ".covm[0]"  0 1 1;
	setAttr ".cdvm[0]"  0 1 1;
	setAttr -s 2 ".pt[2:3]" -type "float3"  0 0.25 0 0 0.25 0;
	setAttr -s 8 ".vt[0:7]"  -0.5 -0.5 0.5 0.5 -0.5 0.5 -0.5 0.5 0.5 0.5 0.5 0.5
		 -0.5 0.5 -0.5 0.5 0.5 -0.5 -0.5 -0.5 -0.5 0.5 -0.5 -0.5;
	setAttr -s 12 ".ed[0:11]"  0 1 0 2 3 0 4 5 0 6 7 0 0 2 1 1 3 1 2 4 0
		 3 5 0 4 6 1 5 7 1 6 0 0 7 1 0;
	setAttr -s 24 ".n[0:23]" -type "float3"  0 0 1 0 0 1 0 0 1 0 0 1 0 1 0 0 1 0 0 1
		 0 0 1 0 0 0 -1 0 0 -1 0 0 -1 0 0 -1 0 -1 0 0 -1 0 0 -1 0 0 -1 0 1 0 0 1 0 0 1 0 0 1 0 0
		 -1 0 0 -1 0 0 -1 0 0 -1 0 0;
	setAttr -s 6 -ch 24 ".fc[0:5]" -type "polyFaces" 
		f 4 0 5 -2 -5
		mu 0 4 0 1 3 2
		mu 1 4 0 1 2 3
		mc 0 4 0 1 2 3
		f 4 1 7 -3 -7
		mu 0 4 2 3 5 4
		f 4 2 9 -4 -9
		mu 0 4 4 5 7 6
		f 4 3 11 -1 -11
		mu 0 4 6 7 9 8
		f 4 -12 -10 -8 -6
		mu 0 4 1 10 11 3
		f 4 10 4 6 8
		mu 0 4 12 0 2 13;
	setAttr ".cd" -type "dataPolyComponent" Index_Data Edge 2 
		0 2 
		3 1.5 ;
	setAttr ".cvd" -type "dataPolyComponent" Index_Data Vertex 0 ;
	setAttr ".pd[0]" -type "dataPolyComponent" Index_Data UV 2 
		0 0 
		3 1 ;
	setAttr ".hfd" -type "dataPolyComponent" Index_Data Face 0 ;
	setAttr ".glossSubdiv" 2;
createNode furGroom -n "carpetFur" -p "bench";
	rename -uid "A1B2C3D4-0000-1111-2222-000000000023";
	setAttr -k off ".v";
	setAttr -s 3 ".guides[0:2]"  0 1 2;
createNode joint -n "hinge" -p "set";
	rename -uid "A1B2C3D4-0000-1111-2222-000000000024";
	setAttr ".t" -type "double3" 0 1 0 ;
	setAttr ".jo" -type "double3" 0 0 90 ;
	setAttr ".radi" 0.5;
createNode transform -n "door" -p "hinge";
	rename -uid "A1B2C3D4-0000-1111-2222-000000000025";
createNode locator -n "doorShape" -p "door";
	rename -uid "A1B2C3D4-0000-1111-2222-000000000026";
	setAttr -k off ".v";
	setAttr ".los" -type "double3" 0.5 0.5 0.5 ;
createNode lightLinker -s -n "lightLinker1";
	rename -uid "A1B2C3D4-0000-1111-2222-000000000030";
	setAttr -s 3 ".lnk";
	setAttr -s 3 ".slnk";
createNode shapeEditorManager -n "shapeEditorManager";
	rename -uid "A1B2C3D4-0000-1111-2222-000000000031";
createNode displayLayerManager -n "layerManager";
	rename -uid "A1B2C3D4-0000-1111-2222-000000000032";
createNode displayLayer -n "defaultLayer";
	rename -uid "A1B2C3D4-0000-1111-2222-000000000033";
createNode renderLayerManager -n "renderLayerManager";
	rename -uid "A1B2C3D4-0000-1111-2222-000000000034";
createNode renderLayer -n "defaultRenderLayer";
	rename -uid "A1B2C3D4-0000-1111-2222-000000000035";
	setAttr ".g" yes;
createNode glossSurface -n "varnish";
	rename -uid "A1B2C3D4-0000-1111-2222-000000000036";
	setAttr ".c" -type "float3" 0.6 0.4 0.2 ;
	setAttr ".w" -type "glossWeights" 2 "base" 0.8 "coat" 0.2;
createNode shadingEngine -n "varnishSG";
	rename -uid "A1B2C3D4-0000-1111-2222-000000000037";
	setAttr ".ihi" 0;
	setAttr -s 2 ".dsm";
	setAttr ".ro" yes;
createNode materialInfo -n "materialInfo1";
	rename -uid "A1B2C3D4-0000-1111-2222-000000000038";
createNode lambert -n "paint";
	rename -uid "A1B2C3D4-0000-1111-2222-000000000039";
	setAttr ".c" -type "float3" 0.1 0.3 0.7 ;
createNode shadingEngine -n "paintSG";
	rename -uid "A1B2C3D4-0000-1111-2222-00000000003A";
	setAttr ".ihi" 0;
	setAttr ".ro" yes;
createNode file -n "woodMap";
	rename -uid "A1B2C3D4-0000-1111-2222-00000000003B";
	setAttr ".ftn" -type "string" "C:\\textures\\wood \"dark\".tif";
createNode place2dTexture -n "place2dTexture1";
	rename -uid "A1B2C3D4-0000-1111-2222-00000000003C";
	setAttr ".re" -type "float2" 2 2 ;
createNode groupId -n "groupId1";
	rename -uid "A1B2C3D4-0000-1111-2222-00000000003D";
	setAttr ".ihi" 0;
createNode script -n "uiConfigurationScriptNode";
	rename -uid "A1B2C3D4-0000-1111-2222-00000000003E";
	setAttr ".b" -type "string" (
		"// Maya Mel UI Configuration File.\n//\nglobal string $gMainPane;\n"
		+ "if (`paneLayout -exists $gMainPane`) {\n\tprint \"never run\";\n}\n");
	setAttr ".st" 3;
createNode script -n "sceneConfigurationScriptNode";
	rename -uid "A1B2C3D4-0000-1111-2222-00000000003F";
	setAttr ".b" -type "string" "playbackOptions -min 1001 -max 1096 -ast 1001 -aet 1120 ";
	setAttr ".st" 6;
select -ne :time1;
	setAttr -av -k on ".cch";
	setAttr -cb on ".ihi";
	setAttr ".o" 1001;
	setAttr ".unw" 1001;
select -ne :hardwareRenderingGlobals;
	setAttr ".otfna" -type "stringArray" 2 "NURBS Curves" "Polygons"  ;
	setAttr ".otfva" -type "Int32Array" 2 0 1 ;
	setAttr ".fprt" yes;
select -ne :renderPartition;
	setAttr -s 4 ".st";
select -ne :defaultShaderList1;
	setAttr -s 6 ".s";
select -ne :defaultTextureList1;
select -ne :initialShadingGroup;
	setAttr ".ro" yes;
select -ne :initialParticleSE;
	setAttr ".ro" yes;
select -ne :defaultResolution;
	setAttr ".w" 1920;
	setAttr ".h" 1080;
	setAttr ".pa" 1;
	setAttr ".dar" 1.7777777910232544;
select -ne :hardwareRenderGlobals;
	setAttr ".ctrs" 256;
	setAttr ".btrs" 512;
connectAttr "groupId1.id" "benchShape.iog.og[0].gid";
connectAttr "varnishSG.mwc" "benchShape.iog.og[0].gco";
connectAttr "benchShape.w" "carpetFur.mesh";
relationship "link" ":lightLinker1" ":initialShadingGroup.message" ":defaultLightSet.message";
relationship "link" ":lightLinker1" "varnishSG.message" ":defaultLightSet.message";
relationship "shadowLink" ":lightLinker1" "varnishSG.message" ":defaultLightSet.message";
connectAttr "layerManager.dli[0]" "defaultLayer.id";
connectAttr "renderLayerManager.rlmi[0]" "defaultRenderLayer.rlid";
connectAttr "varnish.out" "varnishSG.ss";
connectAttr "benchShape.iog.og[0]" "varnishSG.dsm" -na;
connectAttr "groupId1.msg" "varnishSG.gn" -na;
connectAttr "benchShape.iog.og[1]" "paintSG.dsm" -na;
connectAttr "paint.oc" "paintSG.ss";
connectAttr "varnishSG.msg" "materialInfo1.sg";
connectAttr "varnish.msg" "materialInfo1.m";
connectAttr "woodMap.oc" "varnish.c";
connectAttr "place2dTexture1.o" "woodMap.uv";
connectAttr "set.wear" "varnish.wear";
connectAttr "varnishSG.pa" ":renderPartition.st" -na;
connectAttr "paintSG.pa" ":renderPartition.st" -na;
connectAttr "varnish.msg" ":defaultShaderList1.s" -na;
connectAttr "woodMap.msg" ":defaultTextureList1.tx" -na;
connectAttr "defaultRenderLayer.msg" ":defaultRenderingList1.r" -na;
dataStructure -fmt "raw" -as "name=glossStats:float=min:float=max";
// End of room.ma
