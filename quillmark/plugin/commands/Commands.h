// The module's commands.
#pragma once

void Quillmark_Test();
void Quillmark_Website();
void Quillmark_About();
void Quillmark_Support();
void Quillmark_Faq();
void Quillmark_New();
void Quillmark_Demo();
void Quillmark_Help();
void Quillmark_Live_Update();
