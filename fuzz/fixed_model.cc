// SPDX-License-Identifier: BSD-3-Clause
#include "fuzz/fixed_model.h"

#include <qmodel/loader.h>
#include <qmodel/schema.h>

static constexpr char kModule[] =
    R"YIN(<module name='f' xmlns='urn:ietf:params:xml:ns:yang:yin:1'>
<namespace uri='urn:fuzz'/><prefix value='f'/>
<feature name='on'/><feature name='off'/>
<identity name='base'/><identity name='one'><base name='base'/></identity>
<identity name='two'><base name='one'/></identity>
<typedef name='small'><type name='int8'><range value='-5..5|7'/></type><default value='3'/></typedef>
<typedef name='smaller'><type name='small'><range value='min..0'/></type></typedef>
<container name='top'>
 <list name='entry'><key value='id name'/>
  <leaf name='id'><type name='uint8'/></leaf><leaf name='name'><type name='string'/></leaf>
  <leaf name='v'><type name='smaller'/></leaf>
  <action name='act'><input>
   <leaf name='how'><type name='string'/><mandatory value='true'/></leaf>
   <leaf name='dflt'><type name='small'/></leaf>
  </input></action>
 </list>
</container>
<rpc name='op'><input><must condition='a or b'/>
 <leaf name='a'><type name='string'><length value='0..5'/><pattern value='[a-z]*'/></type></leaf>
 <leaf name='b'><type name='identityref'><base name='base'/></type><default value='f:one'/></leaf>
 <container name='c'><leaf name='d'><type name='decimal64'><fraction-digits value='2'/></type>
  <default value='1.5'/><when condition="derived-from-or-self(../../b, 'f:one')"/></leaf>
  <leaf name='e'><type name='bits'><bit name='x'/><bit name='y'/></type></leaf></container>
 <container name='p'><presence value='p'/><leaf name='m'><type name='empty'/>
  <mandatory value='true'/></leaf></container>
 <choice name='ch'><default value='k1'/>
  <case name='k1'><leaf name='k1a'><type name='union'><type name='int8'/><type name='binary'/>
   </type><default value='7'/></leaf><leaf-list name='k1b'><type name='string'/></leaf-list></case>
  <case name='k2'><leaf name='k2a'><type name='enumeration'><enum name='u'/><enum name='w'/></type>
   </leaf></case></choice>
 <leaf name='r'><type name='leafref'><path value='../a'/></type></leaf>
 <list name='l'><leaf name='n'><type name='uint64'/><default value='9'/>
  <must condition='. &gt; ../../x'><error-message><value>no</value></error-message></must></leaf></list>
 <anydata name='any'/><leaf name='x'><type name='boolean'/><if-feature name='on'/></leaf>
</input><output><leaf name='res'><type name='string'/></leaf></output></rpc>
<notification name='ev'><leaf name='a'><type name='string'/><mandatory value='true'/></leaf>
 <leaf name='b'><when condition="../a = 'x'"/><type name='int32'/></leaf>
 <leaf name='c'><must condition='. != ../a'/><type name='string'/></leaf>
 <container name='d'><leaf name='e'><type name='string'/><must condition='../../a'/></leaf></container>
</notification></module>)YIN";

QmCtx* LoadFixedModel() {
  QmCtx* ctx = QM_CTX_Create(0);
  if (ctx == nullptr || QM_CTX_LoadMemory(ctx, kModule) == 0) {
    static_cast<void>(QM_MOD_EnableFeature(QM_CTX_GetModuleByModName(ctx, "f"), "on"));
    return ctx;
  }
  QM_CTX_Delete(ctx);
  return nullptr;
}
